#include "camera_server/logs.h"

#include <algorithm>
#include <iostream>
#include <stdexcept>
#include <utility>

#include "common/shown_text.h"
#include "json/json.h"
#include "toolkit/ascii.h"
#include "toolkit/visible_text.h"

namespace orbelcast::camera_server {

namespace {

/// `text` as it can stand in a line: short, and without what would end the line or be taken for more than text.
std::string OneLine(std::string_view text, std::size_t most) {
  const std::string line = WithoutControls(HidePasswords(text), ' ');
  return line.size() <= most ? line : line.substr(0, most) + "...";
}

std::string Fields(const Actor& actor, std::string_view event, std::string_view detail) {
  std::string user = OneLine(actor.user, kMaxActivityUser);
  std::replace(user.begin(), user.end(), ',', ';');
  return actor.address + "," + user + "," + std::string(event) + "," + OneLine(detail, kMaxActivityDetail);
}

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

void ActivityLog::Record(const Actor& actor, std::string_view event, std::string_view detail) {
  const std::lock_guard lock(mutex_);
  Add(Fields(actor, event, detail));
}

void ActivityLog::RecordBeginning(const Actor& actor, std::string_view event, std::string_view subject,
                                  const std::string& doing) {
  const std::lock_guard lock(mutex_);
  auto& last = going_on_.Use(Fields(actor, event, subject));
  if (last == doing) return;
  last = doing;
  Add(Fields(actor, event, doing.empty() ? std::string(subject) : std::string(subject) + ": " + doing));
}

void ActivityLog::Add(std::string fields) {
  if (lines_.empty() || lines_.back().fields != fields) {
    lines_.push_back({.time = {}, .fields = std::move(fields)});
  }
  lines_.back().time = WallClock::now();
  ++lines_.back().count;
  if (lines_.size() > kMaxActivityLines) lines_.pop_front();
}

std::string ActivityLog::Text() const {
  const std::lock_guard lock(mutex_);
  std::string text = "Date,Time,Address,User,Event,Detail\r\n";
  for (const Line& line : lines_) {
    text += LocalText(line.time, "%F,%T,") + line.fields;
    if (line.count > 1) text += " (" + std::to_string(line.count) + " times)";
    text += "\r\n";
  }
  return text;
}

RequestLog::RequestLog(const std::string& file, Credentials credentials) : credentials_(credentials) {
  if (file.empty()) return;
  file_.open(file, std::ios::binary | std::ios::trunc);
  if (!file_) throw std::runtime_error("cannot write the log file " + file);
}

void RequestLog::Record(std::string_view head, const Client& client) {
  const bool is_masked = credentials_ == Credentials::kMasked;
  const std::string_view line = TakeLine(head);
  if (line.find(" /control/") != std::string_view::npos) return;
  Json entry;
  const WallClock::time_point now = WallClock::now();
  entry["time"] = LocalText(now, "%FT%T") + Fraction(now, 3);
  entry["client"] = client.address;
  entry["connection"] = client.id;
  entry["request"] = BytesAsText(is_masked ? MaskRequestLine(line) : line);
  Json& headers = entry["headers"] = Json::Array();
  while (!head.empty()) {
    const std::string_view header = TakeLine(head);
    if (!header.empty()) headers.Append(BytesAsText(is_masked ? MaskHeaderLine(header) : header));
  }
  std::string text = ToLine(entry) + "\n";

  const std::lock_guard lock(mutex_);
  written_bytes_ += text.size();
  if (file_.is_open() && (written_bytes_ > kMaxLogFileBytes || !(file_ << text << std::flush))) {
    std::cerr << "orbelcast-camera-server: the log file is full, and no further request is written to it\n";
    file_.close();
  }
  kept_bytes_ += text.size();
  lines_.push_back(std::move(text));
  while (lines_.size() > kMaxKeptRequests || (kept_bytes_ > kMaxKeptRequestBytes && lines_.size() > 1)) {
    kept_bytes_ -= lines_.front().size();
    lines_.pop_front();
  }
}

std::string RequestLog::Lines(bool forgets_them) {
  const std::lock_guard lock(mutex_);
  std::string text;
  for (const std::string& line : lines_) text += line;
  if (forgets_them) {
    lines_.clear();
    kept_bytes_ = 0;
  }
  return text;
}

}  // namespace orbelcast::camera_server
