#include "camera_server/request_log.h"

#include <algorithm>
#include <chrono>
#include <iostream>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <utility>

#include "camera_server/bounds.h"
#include "camera_server/time_text.h"
#include "common/shown_text.h"
#include "toolkit/ascii.h"
#include "toolkit/visible_text.h"

namespace orbelcast::camera_server {

namespace {

/// Each byte as the character of that number, so that any bytes make a JSON text and come back from it unchanged.
std::string BytesAsText(std::string_view bytes) {
  std::string text;
  for (const char byte : bytes) {
    const auto code = static_cast<unsigned char>(byte);
    if (code < 0x80) {
      text += byte;
    } else {
      text += static_cast<char>(0xc0 | (code >> 6));
      text += static_cast<char>(0x80 | (code & 0x3f));
    }
  }
  return text;
}

/// The request line with every password in it replaced by "***".
std::string MaskRequestLine(std::string_view line) {
  const std::size_t end = std::min(line.rfind(" HTTP/"), line.size());
  const std::size_t target = std::min(line.find_first_not_of(' ', line.find(' ')), end);
  return std::string(line.substr(0, target))
      .append(HidePasswordsOfAddress(line.substr(target, end - target)))
      .append(line.substr(end));
}

/// The header line with the credentials in it, and what passwords stand in others, replaced by "***"; the credentials'
/// scheme and the blanks before it stay.
std::string MaskHeaderLine(std::string_view line) {
  const std::size_t colon = std::min(line.find(':'), line.size());
  const std::string_view name = line.substr(0, colon);
  if (!EqualIgnoringCase(name, "Authorization") && !EqualIgnoringCase(name, "Proxy-Authorization")) {
    return HidePasswords(line);
  }
  const std::size_t scheme = std::min(line.find_first_not_of(" \t", std::min(colon + 1, line.size())), line.size());
  const std::size_t blank = line.find(' ', scheme);
  return std::string(line.substr(0, blank == std::string_view::npos ? scheme : blank + 1)) + "***";
}

}  // namespace

RequestLog::RequestLog(const std::string& file, Credentials credentials) : credentials_(credentials) {
  if (file.empty()) return;
  file_.open(file, std::ios::binary | std::ios::trunc);
  if (!file_) throw std::runtime_error("cannot write the log file " + file);
}

void RequestLog::Record(std::string_view head, const Client& client) {
  const bool is_masked = credentials_ == Credentials::kMasked;
  const std::string_view line = TakeLine(head);
  if (line.find(" /control/") != std::string_view::npos) return;
  nlohmann::ordered_json entry;
  const WallClock::time_point now = WallClock::now();
  entry["time"] = LocalDate(now) + "T" + LocalTime(now) + Fraction(now, 3);
  entry["client"] = client.address;
  entry["connection"] = client.id;
  entry["request"] = BytesAsText(is_masked ? MaskRequestLine(line) : line);
  nlohmann::ordered_json& headers = entry["headers"] = nlohmann::ordered_json::array();
  while (!head.empty()) {
    const std::string_view header = TakeLine(head);
    if (!header.empty()) headers.push_back(BytesAsText(is_masked ? MaskHeaderLine(header) : header));
  }
  std::string text = JsonWithoutControls(entry.dump());
  const std::lock_guard lock(mutex_);
  Write(text);
  Keep(std::move(text));
}

void RequestLog::Keep(std::string line) {
  kept_bytes_ += line.size();
  lines_.push_back(std::move(line));
  while (lines_.size() > kMaxKeptRequests || (kept_bytes_ > kMaxKeptRequestBytes && lines_.size() > 1)) {
    kept_bytes_ -= lines_.front().size();
    lines_.pop_front();
  }
}

void RequestLog::Write(const std::string& line) {
  if (!file_.is_open()) return;
  written_bytes_ += line.size() + 1;
  if (written_bytes_ > kMaxLogFileBytes || !(file_ << line << std::endl)) {  // flushed: somebody may watch the file
    std::cerr << "orbelcast-camera-server: the log file is full, and no further request is written to it\n";
    file_.close();
  }
}

std::string RequestLog::Lines(bool forgets_them) {
  const std::lock_guard lock(mutex_);
  std::string text;
  for (const std::string& line : lines_) text.append(line).append("\n");
  if (forgets_them) {
    lines_.clear();
    kept_bytes_ = 0;
  }
  return text;
}

}  // namespace orbelcast::camera_server
