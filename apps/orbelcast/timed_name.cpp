#include "orbelcast/timed_name.h"

#include <array>
#include <chrono>
#include <ctime>

#include "toolkit/whole_number.h"

namespace orbelcast {

std::string NameOfNow(const std::string& pattern) {
  constexpr std::size_t kNameBytes = 4096;
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  ::localtime_r(&now, &local);
  std::array<char, kNameBytes> name{};
  const std::size_t length = std::strftime(name.data(), name.size(), pattern.c_str(), &local);
  return {name.data(), length};
}

std::optional<LocalTime> ReadTime(std::string_view text) {
  constexpr std::size_t kWithoutSeconds = 16;
  constexpr std::size_t kWithSeconds = 19;
  if (text.size() != kWithoutSeconds && text.size() != kWithSeconds) return std::nullopt;
  const bool marked = text[4] == '-' && text[7] == '-' && (text[10] == ' ' || text[10] == 'T') && text[13] == ':' &&
                      (text.size() == kWithoutSeconds || text[16] == ':');
  if (!marked) return std::nullopt;
  bool good = true;
  const auto part = [&](std::size_t first, std::size_t count, unsigned most) {
    const auto number = WholeNumber<unsigned>(text.substr(first, count));
    good = good && number && *number <= most;
    return good ? static_cast<int>(*number) : 0;
  };
  const LocalTime time{.year = part(0, 4, 9999),
                       .month = part(5, 2, 12),
                       .day = part(8, 2, 31),
                       .hour = part(11, 2, 23),
                       .minute = part(14, 2, 59),
                       .second = text.size() == kWithSeconds ? part(17, 2, 59) : 0};
  const std::chrono::year_month_day day{std::chrono::year(time.year),
                                        std::chrono::month(static_cast<unsigned>(time.month)),
                                        std::chrono::day(static_cast<unsigned>(time.day))};
  return good && day.ok() ? std::optional(time) : std::nullopt;
}

}  // namespace orbelcast
