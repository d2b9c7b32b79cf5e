#pragma once

#include <deque>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "camera_server/bounds.h"
#include "camera_server/recent.h"
#include "camera_server/time_text.h"

namespace orbelcast::camera_server {

/// Who did something: a numeric address, and the user's name as given, empty where none was.
struct Actor {
  std::string address;
  std::string user;
};

/// What people did with the server, as the text that viewers show: a line an event, its fields separated by commas.
/// Holds the newest kMaxActivityLines, and never a password. Thread-safe.
class ActivityLog {
 public:
  /// An event that is the same as the one before it is counted there instead of taking a line of its own.
  void Record(const Actor& actor, std::string_view event, std::string_view detail);
  /// Records what the actor begins to do with a subject, such as to play a camera's archive: not again before it does
  /// something else with it, or has paused for kActivityPause.
  void RecordBeginning(const Actor& actor, std::string_view event, std::string_view subject = "",
                       const std::string& doing = "");

  /// "Date,Time,Address,User,Event,Detail" and the lines, the oldest first, each with CR LF. Only the last field may
  /// hold commas.
  std::string Text() const;

 private:
  struct Line {
    WallClock::time_point time;
    std::string fields;  // from the address on
    int count = 0;
  };
  void Add(std::string fields);

  mutable std::mutex mutex_;
  std::deque<Line> lines_;
  Recent<std::optional<std::string>> going_on_{kMaxSessions, kActivityPause};  // what is done, by the line's fields
};

}  // namespace orbelcast::camera_server
