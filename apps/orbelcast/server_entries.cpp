#include "orbelcast/server_entries.h"

#include "common/command_line.h"
#include "common/option_values.h"
#include "common/shown_text.h"
#include "protocol/limits.h"
#include "protocol/text.h"
#include "toolkit/ascii.h"

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

void AddServerOption(CommandLine& command, std::string& server) {
  command
      .AddText("SERVER", server,
               "The camera server: a host, host:port, or a relay account's address; http:// before it may be left out")
      .Required()
      .Check(CheckServer)
      .ShowEach(KeepSecretsOf)
      .ValueName("");
}

void AddRequestOptions(CommandLine& command, Access& access, double& time_out) {
  AddAccessOptions(command, access, "User name, sent with the request (default: none)");
  AddSecondsOption(command, "--timeout", time_out,
                   "Seconds that connecting and that the answer may take each; may have decimals (default: 10)",
                   kLongestTimeOut)
      .Group("Request");
}

}  // namespace orbelcast
