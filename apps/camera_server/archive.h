#pragma once

#include <mutex>
#include <optional>
#include <string>

#include "camera_server/addresses.h"
#include "camera_server/recent.h"

namespace orbelcast::camera_server {

/// The cameras' archive: a picture each archive step of whole seconds, back from now as far as the settings say. A
/// visitor (a client's address, user and camera) has a position in it that each request moves. Thread-safe.
class Archive {
 public:
  /// `settings` outlives this.
  explicit Archive(const Settings& settings) : settings_(settings) {}

  /// Moves the visitor and gives the time of the picture where it then is.
  ///
  /// Top and bottom are the first and the last picture. Reverse and forward go one picture back or on, and stay at
  /// either end; a visitor without a position begins with the last picture, or with the first. Position goes to the
  /// picture nearest to the time that was typed, which CompleteTime makes whole.
  WallClock::time_point Move(const std::string& visitor, const ArchiveQuery& query, WallClock::time_point now);

 private:
  const Settings& settings_;
  std::mutex mutex_;
  Recent<std::optional<WallClock::time_point>> positions_{kMaxSessions, kSessionTime};
};

/// Makes a typed time whole: a missing part, and a year, month or day of 0, is that of `base`; a part too large is the
/// largest there is, the day by its month. In local time.
WallClock::time_point CompleteTime(const TypedTime& typed, WallClock::time_point base);

}  // namespace orbelcast::camera_server
