#include "archive_query.h"

#include <algorithm>
#include <array>
#include <utility>

#include "live_address.h"

namespace orbelcast::camera_server {

namespace {

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

std::optional<ArchiveMove> MoveOf(std::string_view flag) {
  static constexpr std::array<std::pair<std::string_view, ArchiveMove>, 5> kFlags{{{"T", ArchiveMove::kTop},
                                                                                   {"R", ArchiveMove::kReverse},
                                                                                   {"F", ArchiveMove::kForward},
                                                                                   {"B", ArchiveMove::kBottom},
                                                                                   {"P", ArchiveMove::kPosition}}};
  for (const auto& [name, move] : kFlags) {
    if (flag == name) return move;
  }
  return std::nullopt;
}

std::optional<int>* PartOf(TypedTime& time, std::string_view name) {
  if (name == "Year") return &time.year;
  if (name == "Month") return &time.month;
  if (name == "Day") return &time.day;
  if (name == "Hour") return &time.hour;
  if (name == "Minute") return &time.minute;
  if (name == "Second") return &time.second;
  return nullptr;
}

}  // namespace

std::optional<ArchiveQuery> ParseArchiveQuery(std::string_view query, const PictureForm& form) {
  ArchiveQuery parsed{.device = {}, .form = form};
  if (const std::size_t mark = query.rfind(kPictureCodeMark); mark != std::string_view::npos) {
    parsed.form = ParsePictureCode(query.substr(mark + kPictureCodeMark.size())).value_or(form);
    query = query.substr(0, mark);
  }
  parsed.form = parsed.form.Bounded();
  std::optional<ArchiveMove> move;
  while (!query.empty()) {
    const std::string_view item = query.substr(0, query.find('&'));
    query.remove_prefix(std::min(query.size(), item.size() + 1));
    const std::size_t equals = std::min(item.find('='), item.size());
    const std::string_view name = item.substr(0, equals);
    const std::string_view value = item.substr(std::min(equals + 1, item.size()));
    if (name == "Device") {
      parsed.device = value;
    } else if (std::optional<int>* part = PartOf(parsed.time, name)) {
      *part = LeadingNumber(value);
    } else if (!move) {
      move = MoveOf(name);
    }
  }
  if (!move) return std::nullopt;
  parsed.move = *move;
  return parsed;
}

std::string_view MoveName(ArchiveMove move) {
  switch (move) {
    case ArchiveMove::kTop:
      return "first picture";
    case ArchiveMove::kReverse:
      return "play backwards";
    case ArchiveMove::kForward:
      return "play";
    case ArchiveMove::kBottom:
      return "last picture";
    case ArchiveMove::kPosition:
      return "search";
  }
  return "";
}

}  // namespace orbelcast::camera_server
