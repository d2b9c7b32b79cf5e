#include "orbelcast/server_entries.h"

#include <algorithm>

#include "adapters/posix/configuration_file.h"
#include "protocol/limits.h"
#include "protocol/relay.h"
#include "protocol/text.h"
#include "toolkit/ascii.h"
#include "toolkit/whole_number.h"

namespace orbelcast {

const std::string& Entry::Field(std::size_t index) const {
  static const std::string none;
  return index < fields.size() ? fields[index] : none;
}

std::vector<Entry> EntriesOf(const ServerInfo& info, std::string_view key) {
  std::vector<Entry> entries;
  Parts lines(info.Lines, kCrLf);
  for (std::string_view line; lines.Next(line);) {
    if (!line.starts_with(key)) continue;
    const auto fields = Split(line.substr(key.size()), "\t", protocol_limits::kMaxListFields);
    entries.push_back({{fields.begin(), fields.end()}});
  }
  return entries;
}

bool IsOn(const Entry& entry) {
  return entry.Field(2) != "0";
}

std::size_t PlaceOf(const std::vector<Entry>& entries, const std::string& choice) {
  const auto place = WholeNumber<std::size_t>(choice);
  if (place && *place >= 1 && *place <= entries.size()) return *place;
  const auto named =
      std::ranges::find_if(entries, [&](const Entry& each) { return EqualIgnoringCase(each.Field(1), choice); });
  return named == entries.end() ? 0 : static_cast<std::size_t>(named - entries.begin()) + 1;
}

std::string WhatWasNotRead(const ServerInfo& info) {
  if (info.UnreadBytes == 0) return {};
  return "the server's information is longer than what is read of it (" +
         std::to_string(protocol_limits::kMaxInfoBytes / 1024 / 1024) + " MiB, " +
         std::to_string(protocol_limits::kMaxInfoLines) + " lines); its last " + std::to_string(info.UnreadBytes) +
         " bytes were left out";
}

std::string CheckServer(const std::string& server) {
  if (server.empty() || WithoutHttp(server).empty()) return "give a host, or host:port, such as 127.0.0.1:8080";
  if (StartsWithIgnoringCase(server, "https://"))
    return "a camera server is asked by http, not https; leave https:// out";
  if (WithoutHttp(server).find("://") != std::string_view::npos) {
    return "a camera server is asked by http; give a host, or host:port, such as 127.0.0.1:8080";
  }
  if (HasControlCharacter(server)) return "the address holds a line break or another control character";
  return {};
}

std::string ServerOf(const std::string& text) {
  const std::string_view place = WithoutHttp(text);
  const std::size_t path = place.find('/');
  const bool is_address = StartsWithIgnoringCase(text, "http://") && path < place.size() - 1;
  if (!is_address || IsRelayAddress(LoadConfiguration().configuration, place)) return text;
  return std::string(place.substr(0, path));
}

}  // namespace orbelcast
