#pragma once

#include <cstddef>
#include <deque>
#include <fstream>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "camera_server/http.h"
#include "camera_server/recent.h"
#include "camera_server/settings.h"

namespace orbelcast::camera_server {

/// The doer of something: a numeric address, and the user's name as given, empty where none was.
struct Actor {
  std::string address;
  std::string user;
};

/// The doings of people with the server, as the text that viewers show: a line an event, its fields separated by
/// commas. Holds the newest kMaxActivityLines, and never a password. Thread-safe.
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

/// The requests of clients, byte for byte, one JSON object a line: the newest in memory, and all of them in a file if
/// there is one. Requests for /control/ are not kept. Thread-safe.
class RequestLog {
 public:
  enum class Credentials { kMasked, kShown };
  /// `file` is written from its beginning; empty writes none. Throws std::runtime_error when it cannot be written.
  RequestLog(const std::string& file, Credentials credentials);

  /// `head` is what came from the method to the empty line, whether it makes a request or not.
  void Record(std::string_view head, const Client& client);
  /// The lines in memory, the oldest first, each with a line feed.
  std::string Lines(bool forgets_them = false);

 private:
  const Credentials credentials_;
  std::mutex mutex_;
  std::deque<std::string> lines_;
  std::size_t kept_bytes_ = 0;
  std::ofstream file_;
  std::size_t written_bytes_ = 0;
};

}  // namespace orbelcast::camera_server
