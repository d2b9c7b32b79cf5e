#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace orbelcast {

/// Calls `each` for the lines of a server's list with the line's number, from 0, and its fields; an empty line has
/// none. The text ends in CR LF, so its last line is empty. Lines beyond player_limits::kMaxListLines are left out.
void ForEachLine(std::string_view lines,
                 const std::function<void(std::size_t number, const std::vector<std::string_view>& fields)>& each);

/// The text with "+" turned into a blank and "%" with the two characters behind it into the byte of that hexadecimal
/// number; 0 where they are none. A "%" with fewer behind it stays.
std::string UrlDecode(std::string_view text);

/// A server's activity log as it is shown: a tab for every comma, one line break for two.
std::string LogText(std::string_view text);

/// The number that `text` begins with (0 where it begins with none), as a whole number with at least `digits` digits.
std::string ZeroPadded(std::string_view text, int digits);

}  // namespace orbelcast
