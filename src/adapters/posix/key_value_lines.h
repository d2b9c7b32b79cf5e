#pragma once

#include <optional>
#include <string_view>
#include <vector>

namespace orbelcast {

/// A line `key = value` of a hand-written file, as views into the file's text.
struct KeyValueLine {
  int number;                             ///< Counted from 1.
  std::string_view text;                  ///< All of it, without the blanks around it.
  std::string_view key;                   ///< Without blanks around it.
  std::optional<std::string_view> value;  ///< Likewise; nothing where the line has no "=".
};

/// The lines that say something: neither empty ones nor those that begin with #.
std::vector<KeyValueLine> KeyValueLines(std::string_view text);

}  // namespace orbelcast
