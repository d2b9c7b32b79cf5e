#include "camera_server/archive.h"

#include <chrono>
#include <ctime>

namespace orbelcast::camera_server {

namespace {

/// Far enough for any archive, and within what every clock can say.
constexpr int kFirstYear = 1971;
constexpr int kLastYear = 2200;

int DaysIn(int year, int month) {
  using namespace std::chrono;
  const year_month_day_last last{std::chrono::year(year), month_day_last(std::chrono::month(unsigned(month)))};
  return static_cast<int>(unsigned(last.day()));
}

}  // namespace

WallClock::time_point CompleteTime(const TypedTime& typed, WallClock::time_point base) {
  std::tm parts = LocalParts(base);
  const auto part = [&](std::size_t index, int fallback, int least, int most) {
    return typed.at(index) && *typed.at(index) >= least ? std::min(*typed.at(index), most) : fallback;
  };
  const int year = std::clamp(part(0, parts.tm_year + 1900, 1, kLastYear), kFirstYear, kLastYear);
  const int month = part(1, parts.tm_mon + 1, 1, 12);
  parts.tm_year = year - 1900;
  parts.tm_mon = month - 1;
  parts.tm_mday = std::min(part(2, parts.tm_mday, 1, 31), DaysIn(year, month));
  parts.tm_hour = part(3, parts.tm_hour, 0, 23);
  parts.tm_min = part(4, parts.tm_min, 0, 59);
  parts.tm_sec = part(5, parts.tm_sec, 0, 59);
  parts.tm_isdst = -1;
  return WallClock::from_time_t(std::mktime(&parts));
}

WallClock::time_point Archive::Move(const std::string& visitor, const ArchiveQuery& query, WallClock::time_point now) {
  using std::chrono::seconds;
  const seconds step(settings_.archive_step);
  const auto picture_before = [step](WallClock::time_point time) {
    return WallClock::time_point(std::chrono::floor<seconds>(time.time_since_epoch()) / step * step);
  };
  const WallClock::time_point last = picture_before(now);
  const WallClock::time_point first = last - std::chrono::hours(settings_.archive_hours) / step * step;

  const std::lock_guard lock(mutex_);
  auto& position = positions_.Use(visitor);
  if (query.move == 'T') position = first;
  if (query.move == 'B') position = last;
  if (query.move == 'R') position = position ? *position - step : last;
  if (query.move == 'F') position = position ? *position + step : first;
  if (query.move == 'P') position = picture_before(CompleteTime(query.time, position.value_or(now)) + step / 2);
  position = std::clamp(position.value_or(last), first, last);
  return *position;
}

}  // namespace orbelcast::camera_server
