#include "camera_server/addresses.h"

#include <algorithm>
#include <chrono>
#include <ctime>

#include "toolkit/whole_number.h"

namespace orbelcast::camera_server {

namespace {

constexpr std::array<std::string_view, 6> kTimeParts{"Year", "Month", "Day", "Hour", "Minute", "Second"};
constexpr std::string_view kMoves = "TRFBP";

/// The number that `text` begins with; one of more digits than any part of a time has stands for "too large".
std::optional<int> LeadingNumber(std::string_view text) {
  constexpr int kLargest = 99999;
  std::optional<int> number;
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  for (const char letter : text) {
    if (letter < '0' || letter > '9') break;
    number = std::min(kLargest, number.value_or(0) * 10 + (letter - '0'));
  }
  return number;
}

/// Reads "0640x0480080" and anything behind.
std::optional<PictureForm> ParsePictureCode(std::string_view code) {
  constexpr std::size_t kLength = 12;
  if (code.size() < kLength || code[4] != 'x') return std::nullopt;
  const auto width = WholeNumber(code.substr(0, 4));
  const auto height = WholeNumber(code.substr(5, 4));
  const auto quality = WholeNumber(code.substr(9, 3));
  if (!width || !height || !quality) return std::nullopt;
  return PictureForm{.width = *width, .height = *height, .quality = *quality};
}

/// Takes the picture code, if there is one, off the end of `text`. The last one counts: a password may hold anything.
bool TakePictureCode(std::string_view& text, PictureForm& form) {
  const std::size_t mark = text.rfind(kPictureCodeMark);
  if (mark == std::string_view::npos) return false;
  form = ParsePictureCode(text.substr(mark + kPictureCodeMark.size())).value_or(form);
  text = text.substr(0, mark);
  return true;
}

/// Far enough for any archive, and within what every clock can say.
constexpr int kFirstYear = 1971;
constexpr int kLastYear = 2200;

int DaysIn(int year, int month) {
  using namespace std::chrono;
  const year_month_day_last last{std::chrono::year(year), month_day_last(std::chrono::month(unsigned(month)))};
  return static_cast<int>(unsigned(last.day()));
}

}  // namespace

std::pair<std::string_view, std::string_view> CutAt(std::string_view text, std::string_view mark) {
  const std::size_t at = std::min(text.find(mark), text.size());
  return {text.substr(0, at), text.substr(std::min(at + mark.size(), text.size()))};
}

std::vector<std::pair<std::string_view, std::string_view>> QueryItems(std::string_view query) {
  std::vector<std::pair<std::string_view, std::string_view>> items;
  while (!query.empty()) {
    const auto [item, rest] = CutAt(query, "&");
    items.push_back(CutAt(item, "="));
    query = rest;
  }
  return items;
}

std::string_view QueryValue(std::string_view target, std::string_view name) {
  for (const auto& [each, value] : QueryItems(CutAt(target, "?").second)) {
    if (each == name) return value;
  }
  return {};
}

std::optional<int> WholeNumber(std::string_view text) {
  const std::optional<int> number = orbelcast::WholeNumber<int>(text);
  return number >= 0 ? number : std::nullopt;
}

std::optional<LiveAddress> ParseLiveAddress(std::string_view target, const PictureForm& form) {
  LiveAddress address{.form = form};
  if (target.starts_with(kStreamPath)) address.rate = kUsualRate;
  if (!address.rate && !target.starts_with(kLivePath)) return std::nullopt;
  std::string_view path = target.substr(target.find('/', 1) + 1);
  if (!TakePictureCode(path, address.form)) {
    for (const auto& [name, value] : QueryItems(CutAt(path, "?").second)) {
      const std::optional<int> number = WholeNumber(value);
      if (name == "width") address.form.width = number.value_or(form.width);
      if (name == "height") address.form.height = number.value_or(form.height);
      if (name == "quality") address.form.quality = number.value_or(form.quality);
      if (name == "rate" && address.rate) address.rate = std::clamp(number.value_or(kUsualRate), 1, kMaxRate);
    }
    path = path.substr(0, path.find('?'));
  }
  address.form = address.form.Bounded();
  const auto [camera, login] = CutAt(path, "/");
  address.camera = WholeNumber(camera).value_or(0);
  address.login = login;
  return address;
}

std::optional<LoginBaseAddress> ParseLoginBase(std::string_view target) {
  if (!target.starts_with(kLoginBase)) return std::nullopt;
  target.remove_prefix(kLoginBase.size());
  const auto [login, command] = CutAt(target, kCommandMark);
  return LoginBaseAddress{.login = login, .command = command};
}

std::optional<ArchiveQuery> ParseArchiveQuery(std::string_view query, const PictureForm& form) {
  ArchiveQuery parsed{.form = form};
  TakePictureCode(query, parsed.form);
  parsed.form = parsed.form.Bounded();
  for (const auto& [name, value] : QueryItems(query)) {
    const auto* const part = std::find(kTimeParts.begin(), kTimeParts.end(), name);
    if (name == "Device") {
      parsed.device = value;
    } else if (part != kTimeParts.end()) {
      parsed.time.at(static_cast<std::size_t>(part - kTimeParts.begin())) = LeadingNumber(value);
    } else if (parsed.move == 0 && name.size() == 1 && kMoves.find(name) != std::string_view::npos) {
      parsed.move = name.front();
    }
  }
  if (parsed.move == 0) return std::nullopt;
  return parsed;
}

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
