#include "orbelcast/doctor/time_code.h"

#include <algorithm>
#include <cctype>
#include <ctime>

#include "toolkit/whole_number.h"

namespace orbelcast {

std::optional<double> SecondsOf(std::string_view time_code) {
  constexpr std::size_t kDigits = 14;
  const bool digits = std::ranges::all_of(time_code, [](unsigned char letter) { return std::isdigit(letter) != 0; });
  if (time_code.size() != kDigits || !digits) return std::nullopt;
  const auto part = [&](std::size_t first, std::size_t count) {
    return WholeNumber<int>(time_code.substr(first, count)).value_or(0);
  };
  return SecondsOf(LocalTime{.year = part(0, 4),
                             .month = part(4, 2),
                             .day = part(6, 2),
                             .hour = part(8, 2),
                             .minute = part(10, 2),
                             .second = part(12, 2)});
}

double SecondsOf(const LocalTime& now) {
  std::tm time{};
  time.tm_year = now.year - 1900;
  time.tm_mon = now.month - 1;
  time.tm_mday = now.day;
  time.tm_hour = now.hour;
  time.tm_min = now.minute;
  time.tm_sec = now.second;
  return static_cast<double>(::timegm(&time));
}

std::string DateAndTime(const std::string& time_code) {
  return time_code.substr(0, 4) + "-" + time_code.substr(4, 2) + "-" + time_code.substr(6, 2) + " " +
         time_code.substr(8, 2) + ":" + time_code.substr(10, 2) + ":" + time_code.substr(12, 2);
}

}  // namespace orbelcast
