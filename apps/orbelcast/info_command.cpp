#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "common/colours.h"
#include "common/command_line.h"
#include "common/shown_text.h"
#include "orbelcast/commands.h"
#include "orbelcast/event_json.h"
#include "orbelcast/server_entries.h"
#include "orbelcast/server_talk.h"
#include "protocol/server_info.h"

namespace orbelcast {

namespace {

struct InfoOptions {
  ServerOptions server;
  bool json = false;
};

/// Names of a value are followed by blanks up to here.
constexpr std::size_t kNameWidth = 12;

/// Columns that a text takes: its letters, not its bytes.
std::size_t WidthOf(const std::string& text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](unsigned char byte) { return (byte & 0xc0) != 0x80; }));
}

// ---- For people ---------------------------------------------------------------------------------------------------

class Table {
 public:
  explicit Table(std::ostream& output) : output_(output) {}

  void Row(const std::string& name, const std::string& value) {
    if (value.empty()) return;
    output_ << name << std::string(kNameWidth - std::min(name.size(), kNameWidth - 1), ' ') << Shown(value) << '\n';
  }

  /// A heading and a line an entry: its number, its cells in columns.
  void List(const std::string& heading, std::vector<std::vector<std::string>> rows) {
    if (rows.empty()) return;
    std::vector<std::size_t> widths;
    for (auto& row : rows) {
      std::ranges::transform(row, row.begin(), Shown);
      widths.resize(std::max(widths.size(), row.size()));
      for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], WidthOf(row[i]));
    }
    output_ << '\n' << colours_.Paint(Colour::kHeading, heading) << '\n';
    for (std::size_t number = 1; number <= rows.size(); ++number) {
      const auto& row = rows[number - 1];
      std::string line = "  " + std::to_string(number);
      line.resize(std::max(line.size(), std::size_t{6}), ' ');
      for (std::size_t i = 0; i < row.size(); ++i) line += row[i] + std::string(widths[i] - WidthOf(row[i]) + 2, ' ');
      output_ << line.substr(0, line.find_last_not_of(' ') + 1) << '\n';
    }
  }

 private:
  std::ostream& output_;
  const Colours colours_{STDOUT_FILENO};
};

void PrintTable(const ServerInfo& info, std::ostream& output) {
  Table table(output);
  table.Row("Name", info.SystemName);
  table.Row("Software", info.ServerHeader);
  table.Row("Version", info.ServerVersion);
  table.Row("Date", info.DateHeader);
  if (info.ViaRelay) table.Row("Relay says", info.RelayHost + ":" + info.RelayPort);
  if (!info.GpsLat.empty() || !info.GpsLon.empty()) table.Row("Place", info.GpsLat + " " + info.GpsLon);
  table.Row("Altitude", info.GpsAlt);
  for (const auto& [key, value] :
       {std::pair("SYN", info.SynValue), std::pair("CPU", info.CpuValue), std::pair("RAM", info.RamValue),
        std::pair("AME", info.AmeValue), std::pair("CPN", info.CpnValue), std::pair("CPS", info.CpsValue)}) {
    table.Row(key, value);
  }
  if (info.UpsValue != 0) table.Row("UPS", std::to_string(info.UpsValue));
  std::string flags;
  for (const auto& [name, set] :
       {std::pair("ADM", info.AdmFlag), std::pair("AES", info.AesFlag), std::pair("CST", info.CstFlag)}) {
    if (set) flags += (flags.empty() ? "" : " ") + std::string(name);
  }
  table.Row("Flags", flags);

  const auto list = [&](const std::string& heading, std::string_view key, auto cells) {
    std::vector<std::vector<std::string>> rows;
    for (const Entry& entry : EntriesOf(info, key)) rows.push_back(cells(entry));
    table.List(heading, std::move(rows));
  };
  const auto switched = [](const Entry& entry) {
    return std::vector{entry.Field(1), std::string(IsOn(entry) ? "on" : "off")};
  };
  list("Cameras", "CAM:", [](const Entry& entry) {
    return std::vector{entry.Field(1), entry.Field(0), entry.Field(2)};
  });
  list("Alerts", "ALT:", [](const Entry& entry) { return std::vector{entry.Field(1)}; });
  list("Outputs", "HWO:", switched);
  list("Inputs", "HWI:", switched);
}

// ---- For programs -------------------------------------------------------------------------------------------------

Json SwitchesToJson(const std::vector<Entry>& entries) {
  Json list = Json::Array();
  for (const Entry& entry : entries) list.Append({{"name", entry.Field(1)}, {"on", IsOn(entry)}});
  return list;
}

Json ToJson(const ServerInfo& info) {
  Json json;
  json["answered"] = !info.AllHeaders.empty();
  json["status"] = info.Status;
  json["camera_server"] = info.ViewerMarker;
  json["name"] = info.SystemName;
  json["software"] = info.ServerHeader;
  json["version"] = info.ServerVersion;
  json["date"] = info.DateHeader;
  json["gps"] = {{"lat", info.GpsLat}, {"lon", info.GpsLon}, {"alt", info.GpsAlt}};
  json["relay"] = nullptr;
  if (info.ViaRelay) {
    json["relay"] = {{"answer", info.RelayAnswer}, {"host", info.RelayHost}, {"port", info.RelayPort}};
  }
  json["values"] = {{"SYN", info.SynValue}, {"CPU", info.CpuValue}, {"RAM", info.RamValue}, {"AME", info.AmeValue},
                    {"CPN", info.CpnValue}, {"CPS", info.CpsValue}, {"UPS", info.UpsValue}};
  json["flags"] = {{"ADM", info.AdmFlag}, {"AES", info.AesFlag}, {"CST", info.CstFlag}};
  json["direct_file_key"] = info.DirectFileKey;
  json["cameras"] = Json::Array();
  for (const Entry& entry : EntriesOf(info, "CAM:")) {
    json["cameras"].Append({{"device", entry.Field(0)}, {"name", entry.Field(1)}, {"live_base", entry.Field(2)}});
  }
  json["alerts"] = Json::Array();
  for (const Entry& entry : EntriesOf(info, "ALT:")) json["alerts"].Append({{"name", entry.Field(1)}});
  json["outputs"] = SwitchesToJson(EntriesOf(info, "HWO:"));
  json["inputs"] = SwitchesToJson(EntriesOf(info, "HWI:"));
  return json;
}

/// Requests the server's information and prints it, as a table or as JSON.
ExitStatus Info(const InfoOptions& options) {
  ServerTalk server(options.server);
  const ServerInfo info = server.AskForInformation();
  const auto problem = server.WhyNoInformation(info);
  if (options.json) {
    Json json = ToJson(info);
    json["error"] = problem ? ToJson(*problem) : Json(nullptr);
    std::cout << ToLines(WithoutPasswords(json)) << '\n';
  } else if (!problem) {
    PrintTable(info, std::cout);
  }
  if (const std::string unread = WhatWasNotRead(info); !unread.empty()) std::cerr << "orbelcast: " << unread << '\n';
  if (!problem) return kWorked;
  Tell(*problem, std::cerr);
  return kNoPictures;
}

}  // namespace

CommandRun BuildInfo(CommandLine& command) {
  command.Footer(kExitStatusOfPictures);
  const auto options = std::make_shared<InfoOptions>();
  AddServerOptions(command, options->server);
  command.AddFlag("--json", options->json, "Print JSON, for programs, instead of a table").Group("Output");
  return [options] { return Info(*options); };
}

}  // namespace orbelcast
