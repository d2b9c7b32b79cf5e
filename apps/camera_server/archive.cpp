#include "archive.h"

#include <algorithm>
#include <chrono>
#include <ctime>

#include "bounds.h"

namespace orbelcast::camera_server {

namespace {

constexpr int kTmYear = 1900;
/// Far enough for any archive, and within what every clock can say.
constexpr int kFirstYear = 1971;
constexpr int kLastYear = 2200;

int Part(const std::optional<int>& typed, int base, int least, int most) {
  if (!typed || *typed < least) return base;
  return std::min(*typed, most);
}

int DaysIn(int year, int month) {
  using namespace std::chrono;
  const year_month_day_last last{std::chrono::year(year), month_day_last(std::chrono::month(unsigned(month)))};
  return static_cast<int>(unsigned(last.day()));
}

}  // namespace

WallClock::time_point CompleteTime(const TypedTime& typed, WallClock::time_point base) {
  const std::tm parts = LocalParts(base);
  std::tm whole{};
  const int year = std::clamp(Part(typed.year, parts.tm_year + kTmYear, 1, kLastYear), kFirstYear, kLastYear);
  const int month = Part(typed.month, parts.tm_mon + 1, 1, 12);
  whole.tm_year = year - kTmYear;
  whole.tm_mon = month - 1;
  whole.tm_mday = std::min(Part(typed.day, parts.tm_mday, 1, 31), DaysIn(year, month));
  whole.tm_hour = Part(typed.hour, parts.tm_hour, 0, 23);
  whole.tm_min = Part(typed.minute, parts.tm_min, 0, 59);
  whole.tm_sec = Part(typed.second, parts.tm_sec, 0, 59);
  whole.tm_isdst = -1;
  return WallClock::from_time_t(std::mktime(&whole));
}

Archive::Archive(const Settings& settings) : settings_(settings), positions_(kMaxSessions, kSessionTime) {}

WallClock::time_point Archive::Move(const std::string& visitor, const ArchiveQuery& query, WallClock::time_point now) {
  using std::chrono::seconds;
  const seconds step(settings_.archive_step);
  const auto nearest = [step](WallClock::time_point time) {
    const auto count = std::chrono::floor<seconds>(time.time_since_epoch() + step / 2) / step;
    return WallClock::time_point(count * step);
  };
  const WallClock::time_point last{std::chrono::floor<seconds>(now.time_since_epoch()) / step * step};
  const WallClock::time_point first = last - std::chrono::hours(settings_.archive_hours) / step * step;

  const std::lock_guard lock(mutex_);
  Position& position = positions_.Use(visitor, std::chrono::steady_clock::now()).value;
  switch (query.move) {
    case ArchiveMove::kTop:
      position = first;
      break;
    case ArchiveMove::kBottom:
      position = last;
      break;
    case ArchiveMove::kReverse:
      position = position ? *position - step : last;
      break;
    case ArchiveMove::kForward:
      position = position ? *position + step : first;
      break;
    case ArchiveMove::kPosition:
      position = nearest(CompleteTime(query.time, position.value_or(now)));
      break;
  }
  position = std::clamp(*position, first, last);
  return *position;
}

}  // namespace orbelcast::camera_server
