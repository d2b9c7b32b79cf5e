#pragma once

#include <array>
#include <chrono>
#include <ctime>
#include <string>

/// Times as texts. The program keeps the C locale, so names of days and months are English.
namespace orbelcast::camera_server {

using WallClock = std::chrono::system_clock;

/// A time's parts, as std::strftime writes them in `format`: at most 80 bytes.
inline std::string TimeText(const std::tm& parts, const char* format) {
  std::array<char, 80> text{};
  return {text.data(), std::strftime(text.data(), text.size(), format, &parts)};
}
/// The local time's parts. Before 1970, too, a part of a second is cut off, not rounded up.
inline std::tm LocalParts(WallClock::time_point time) {
  const std::time_t seconds = WallClock::to_time_t(std::chrono::floor<std::chrono::seconds>(time));
  std::tm parts{};
  localtime_r(&seconds, &parts);
  return parts;
}
/// "2024-01-31", local time.
inline std::string LocalDate(WallClock::time_point time) {
  return TimeText(LocalParts(time), "%Y-%m-%d");
}
/// "23:59:59", local time.
inline std::string LocalTime(WallClock::time_point time) {
  return TimeText(LocalParts(time), "%H:%M:%S");
}
/// The picture's time code: 14 digits, YYYYMMDDhhmmss, local time.
inline std::string TimeCode(WallClock::time_point time) {
  return TimeText(LocalParts(time), "%Y%m%d%H%M%S");
}
/// What is behind the second: ".4" with one digit, ".432" with three. Cut, not rounded.
inline std::string Fraction(WallClock::time_point time, std::size_t digits) {
  const auto within = time - std::chrono::floor<std::chrono::seconds>(time);
  const auto thousandths = std::chrono::duration_cast<std::chrono::milliseconds>(within).count();
  return "." + std::to_string(1000 + thousandths).substr(1, digits);
}
/// "Sun, 06 Nov 1994 08:49:37 GMT"
inline std::string HttpDate(WallClock::time_point time) {
  const std::time_t seconds = WallClock::to_time_t(time);
  std::tm parts{};
  gmtime_r(&seconds, &parts);
  return TimeText(parts, "%a, %d %b %Y %H:%M:%S GMT");
}

}  // namespace orbelcast::camera_server
