#pragma once

#include <chrono>
#include <ctime>
#include <string>

namespace orbelcast::camera_server {

using WallClock = std::chrono::system_clock;

std::tm LocalParts(WallClock::time_point time);
/// "Sun, 06 Nov 1994 08:49:37 GMT"
std::string HttpDate(WallClock::time_point time);
/// "2024-01-31T23:59:59.123", local time.
std::string TimeStamp(WallClock::time_point time);
/// The picture's time code: 14 digits, YYYYMMDDhhmmss, local time.
std::string TimeCode(WallClock::time_point time);
/// "2024-01-31", local time.
std::string LocalDate(WallClock::time_point time);
/// "23:59:59", local time.
std::string LocalTime(WallClock::time_point time);
/// "23:59:59.4", local time, cut to the tenth.
std::string LocalTimeWithTenths(WallClock::time_point time);

}  // namespace orbelcast::camera_server
