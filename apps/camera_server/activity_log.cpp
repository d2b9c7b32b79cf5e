#include "activity_log.h"

#include <algorithm>
#include <utility>

#include "bounds.h"
#include "shown_text.h"
#include "toolkit/visible_text.h"

namespace orbelcast::camera_server {

namespace {

/// `text` as it can stand in a line: short, and without what would end the line or be taken for more than text.
std::string OneLine(std::string_view text, std::size_t most) {
  std::string line = WithoutControls(HidePasswords(text), ' ');
  if (line.size() <= most) return line;
  return line.substr(0, most) + "...";
}

std::string Fields(const Actor& actor, std::string_view event, std::string_view detail) {
  std::string user = OneLine(actor.user, kMaxActivityUser);
  std::replace(user.begin(), user.end(), ',', ';');
  return actor.address + "," + user + "," + std::string(event) + "," + OneLine(detail, kMaxActivityDetail);
}

}  // namespace

ActivityLog::ActivityLog() : going_on_(kMaxSessions, kActivityPause) {}

void ActivityLog::Record(const Actor& actor, std::string_view event, std::string_view detail) {
  const std::lock_guard lock(mutex_);
  Add(Fields(actor, event, detail));
}

void ActivityLog::RecordBeginning(const Actor& actor, std::string_view event, std::string_view subject,
                                  std::string_view doing) {
  std::string detail(subject);
  if (!doing.empty()) detail.append(": ").append(doing);
  const std::lock_guard lock(mutex_);
  const auto last = going_on_.Use(Fields(actor, event, subject), std::chrono::steady_clock::now());
  if (!last.is_new && last.value == doing) return;
  last.value = doing;
  Add(Fields(actor, event, detail));
}

void ActivityLog::Add(std::string fields) {
  const WallClock::time_point now = WallClock::now();
  if (!lines_.empty() && lines_.back().fields == fields) {
    lines_.back().time = now;
    ++lines_.back().count;
    return;
  }
  lines_.push_back({.time = now, .fields = std::move(fields)});
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
