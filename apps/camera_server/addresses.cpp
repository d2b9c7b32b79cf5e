#include "camera_server/addresses.h"

#include <algorithm>
#include <charconv>

namespace orbelcast::camera_server {

namespace {

constexpr std::array<std::string_view, 6> kTimeParts{"Year", "Month", "Day", "Hour", "Minute", "Second"};
constexpr std::string_view kMoves = "TRFBP";

/// `text` before and behind `mark`, which is at `at`; all of it and nothing where it is nowhere.
std::pair<std::string_view, std::string_view> Cut(std::string_view text, std::size_t at, std::string_view mark) {
  return {text.substr(0, at), text.substr(std::min(at == std::string_view::npos ? at : at + mark.size(), text.size()))};
}

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

}  // namespace

std::vector<std::pair<std::string_view, std::string_view>> QueryItems(std::string_view query) {
  std::vector<std::pair<std::string_view, std::string_view>> items;
  while (!query.empty()) {
    const auto [item, rest] = Cut(query, query.find('&'), "&");
    items.push_back(Cut(item, item.find('='), "="));
    query = rest;
  }
  return items;
}

std::string_view QueryValue(std::string_view target, std::string_view name) {
  for (const auto& [each, value] : QueryItems(Cut(target, target.find('?'), "?").second)) {
    if (each == name) return value;
  }
  return {};
}

std::optional<int> WholeNumber(std::string_view text) {
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || number < 0) return std::nullopt;
  return number;
}

std::optional<LiveAddress> ParseLiveAddress(std::string_view target, const PictureForm& form) {
  if (!target.starts_with(kLivePath)) return std::nullopt;
  LiveAddress address{.form = form};
  std::string_view path = target.substr(kLivePath.size());
  if (!TakePictureCode(path, address.form)) {
    for (const auto& [name, value] : QueryItems(Cut(path, path.find('?'), "?").second)) {
      const std::optional<int> number = WholeNumber(value);
      if (name == "width") address.form.width = number.value_or(form.width);
      if (name == "height") address.form.height = number.value_or(form.height);
      if (name == "quality") address.form.quality = number.value_or(form.quality);
    }
    path = path.substr(0, path.find('?'));
  }
  address.form = address.form.Bounded();
  const auto [camera, login] = Cut(path, path.find('/'), "/");
  address.camera = WholeNumber(camera).value_or(0);
  address.login = login;
  return address;
}

std::optional<LoginBaseAddress> ParseLoginBase(std::string_view target) {
  if (!target.starts_with(kLoginBase)) return std::nullopt;
  target.remove_prefix(kLoginBase.size());
  const auto [login, command] = Cut(target, target.find(kCommandMark), kCommandMark);
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

}  // namespace orbelcast::camera_server
