#pragma once

#include <optional>
#include <string_view>
#include <utility>

/// Blocks of header lines, each ended by CR LF, as answers and the parts of an answer have them.
namespace orbelcast {

/// Name and value of a header line, without the blanks around them; both empty where it is none, as a status line.
std::pair<std::string_view, std::string_view> SplitHeader(std::string_view line);

/// Takes the next value of the headers of this name (in any letter case) off a header block; nothing where there is
/// none left.
std::optional<std::string_view> NextHeader(std::string_view& block, std::string_view name);

/// The value of the first header of this name; empty without one.
inline std::string_view HeaderIn(std::string_view block, std::string_view name) {
  return NextHeader(block, name).value_or(std::string_view());
}

}  // namespace orbelcast
