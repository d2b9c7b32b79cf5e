#include "protocol/info_text.h"

#include <limits>

#include "protocol/limits.h"
#include "protocol/text.h"
#include "toolkit/rounding.h"

namespace orbelcast {

namespace {

constexpr std::size_t kKeyLength = 4;

/// A line of an info text, whose key says which field of the record it fills.
class Line {
 public:
  Line(std::string_view line, ServerInfo& record) : line_(line), record_(record) {}

  void Append() const { record_.Lines.append(line_).append(kCrLf); }
  void AppendValue(std::string_view key) const {
    if (line_.starts_with(key)) record_.Lines.append(Value()).append(kCrLf);
  }
  void Set(std::string_view key, std::string ServerInfo::*field) const {
    if (line_.starts_with(key)) record_.*field = Value();
  }
  void SetFlag(std::string_view key, bool ServerInfo::*flag) const {
    if (line_.starts_with(key)) record_.*flag = true;
  }
  void SetNumber(std::string_view key, std::int16_t ServerInfo::*field) const {
    using Limits = std::numeric_limits<std::int16_t>;
    if (!line_.starts_with(key)) return;
    const auto number = LeadingNumber(Value());
    if (!number) return;
    const std::int32_t rounded = RoundToEven(*number);
    if (rounded >= Limits::min() && rounded <= Limits::max()) record_.*field = static_cast<std::int16_t>(rounded);
  }

 private:
  std::string_view Value() const { return line_.substr(kKeyLength); }

  std::string_view line_;
  ServerInfo& record_;
};

void ScanMachine(const Line& line) {
  line.Set("SVR:", &ServerInfo::ServerVersion);
  line.Set("SYN:", &ServerInfo::SynValue);
  line.Set("CPU:", &ServerInfo::CpuValue);
  line.Set("RAM:", &ServerInfo::RamValue);
  line.Set("AME:", &ServerInfo::AmeValue);
  line.SetFlag("AES:1", &ServerInfo::AesFlag);
  line.SetFlag("CST:1", &ServerInfo::CstFlag);
  line.SetFlag("ADM:1", &ServerInfo::AdmFlag);
  line.Set("CPN:", &ServerInfo::CpnValue);
  line.Set("CPS:", &ServerInfo::CpsValue);
  line.SetNumber("UPS:", &ServerInfo::UpsValue);
}

void ScanLine(const Line& line, InfoMode mode) {
  switch (mode) {
    case InfoMode::kCameras:
      line.AppendValue("CAM:");
      line.Set("SNM:", &ServerInfo::SystemName);
      ScanMachine(line);
      break;
    case InfoMode::kAlerts:
      line.AppendValue("ALT:");
      line.Set("SNM:", &ServerInfo::SystemName);
      line.SetFlag("AES:1", &ServerInfo::AesFlag);
      ScanMachine(line);
      break;
    case InfoMode::kAllLines:
      line.Append();
      line.Set("SNM:", &ServerInfo::SystemName);
      ScanMachine(line);
      break;
  }
}

/// As much of the text as is read: up to its last line break within the bound, or all of that.
std::string_view WholeLines(std::string_view text) {
  if (text.size() <= protocol_limits::kMaxInfoBytes) return text;
  text = text.substr(0, protocol_limits::kMaxInfoBytes);
  const std::size_t end = text.rfind(kCrLf);
  return end == std::string_view::npos ? text : text.substr(0, end);
}

bool IsMode(InfoMode mode) {
  return mode == InfoMode::kCameras || mode == InfoMode::kAlerts || mode == InfoMode::kAllLines;
}

}  // namespace

void ParseInfoText(std::string_view text, InfoMode mode, ServerInfo& record) {
  if (!IsMode(mode)) return;
  const std::string_view read = WholeLines(text);
  record.UnreadBytes = text.size() - read.size();
  Parts lines(read, kCrLf);
  std::string_view line;
  for (std::size_t number = 0; number < protocol_limits::kMaxInfoLines && lines.Next(line); ++number) {
    ScanLine(Line(line, record), mode);
    if (!line.empty()) continue;
    record.UnreadBytes = 0;  // what follows is no information
    return;
  }
  record.UnreadBytes += lines.Rest().size();
}

}  // namespace orbelcast
