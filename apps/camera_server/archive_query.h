#pragma once

#include <optional>
#include <string_view>

#include "settings.h"

namespace orbelcast::camera_server {

/// Where to go in the archive.
enum class ArchiveMove { kTop, kReverse, kForward, kBottom, kPosition };

/// A day and a time as a person typed them: a part that begins with no digit is missing, and any number may come.
struct TypedTime {
  std::optional<int> year;
  std::optional<int> month;
  std::optional<int> day;
  std::optional<int> hour;
  std::optional<int> minute;
  std::optional<int> second;
};

/// What the command img asks for:
///   Device=ID&Day=D&Month=M&Year=Y&Hour=H&Minute=M&Second=S&FLAG=0&Quality=?live-specialWWWWxHHHHQQQ
/// FLAG is T, R, F, B or P. The order of the items is free, but for the picture code, which ends the query.
struct ArchiveQuery {
  std::string_view device;
  ArchiveMove move = ArchiveMove::kPosition;
  TypedTime time{};  ///< heeded by kPosition alone
  PictureForm form;  ///< bounded; `form` of ParseArchiveQuery where there is no code that can be read
};

/// Reads what follows the command's "?". None when there is no flag. The result points into `query`.
std::optional<ArchiveQuery> ParseArchiveQuery(std::string_view query, const PictureForm& form);

/// What the activity log calls it: "first picture", "play", …
std::string_view MoveName(ArchiveMove move);

}  // namespace orbelcast::camera_server
