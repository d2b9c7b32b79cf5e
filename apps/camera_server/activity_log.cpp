#include "camera_server/activity_log.h"

#include <algorithm>
#include <utility>

#include "common/shown_text.h"
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
    text += LocalDate(line.time) + "," + LocalTime(line.time) + "," + line.fields;
    if (line.count > 1) text += " (" + std::to_string(line.count) + " times)";
    text += "\r\n";
  }
  return text;
}

}  // namespace orbelcast::camera_server
