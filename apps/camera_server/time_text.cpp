#include "time_text.h"

#include <array>
#include <cstdio>

namespace orbelcast::camera_server {

namespace {

template <typename... Numbers>
std::string Print(const char* format, Numbers... numbers) {
  std::array<char, 80> text{};
  std::snprintf(text.data(), text.size(), format, numbers...);
  return text.data();
}

}  // namespace

std::tm LocalParts(WallClock::time_point time) {
  const std::time_t seconds = WallClock::to_time_t(std::chrono::floor<std::chrono::seconds>(time));
  std::tm parts{};
  localtime_r(&seconds, &parts);
  return parts;
}

std::string HttpDate(WallClock::time_point time) {
  // Spelt out here: strftime's names of days and months follow the locale.
  static constexpr std::array<const char*, 7> kDays{"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
  static constexpr std::array<const char*, 12> kMonths{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                       "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  const std::time_t seconds = WallClock::to_time_t(time);
  std::tm parts{};
  gmtime_r(&seconds, &parts);
  return Print("%s, %02d %s %04d %02d:%02d:%02d GMT", kDays.at(parts.tm_wday), parts.tm_mday, kMonths.at(parts.tm_mon),
               parts.tm_year + 1900, parts.tm_hour, parts.tm_min, parts.tm_sec);
}

std::string TimeCode(WallClock::time_point time) {
  const std::tm parts = LocalParts(time);
  return Print("%04d%02d%02d%02d%02d%02d", parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour,
               parts.tm_min, parts.tm_sec);
}

std::string TimeStamp(WallClock::time_point time) {
  const std::tm parts = LocalParts(time);
  const auto within = time - std::chrono::floor<std::chrono::seconds>(time);
  return Print("%04d-%02d-%02dT%02d:%02d:%02d.%03d", parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday,
               parts.tm_hour, parts.tm_min, parts.tm_sec,
               static_cast<int>(std::chrono::duration_cast<std::chrono::milliseconds>(within).count()));
}

std::string LocalDate(WallClock::time_point time) {
  const std::tm parts = LocalParts(time);
  return Print("%04d-%02d-%02d", parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday);
}

std::string LocalTime(WallClock::time_point time) {
  const std::tm parts = LocalParts(time);
  return Print("%02d:%02d:%02d", parts.tm_hour, parts.tm_min, parts.tm_sec);
}

std::string LocalTimeWithTenths(WallClock::time_point time) {
  const std::tm parts = LocalParts(time);
  const auto within = time - std::chrono::floor<std::chrono::seconds>(time);
  const int tenth = static_cast<int>(std::chrono::duration_cast<std::chrono::milliseconds>(within).count() / 100);
  return Print("%02d:%02d:%02d.%d", parts.tm_hour, parts.tm_min, parts.tm_sec, tenth);
}

}  // namespace orbelcast::camera_server
