#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "toolkit/controls.h"

namespace orbelcast {

/// Calls `each` for the lines of a server's list with the line's number, from 0, and its first three fields, as many as
/// there are; an empty line has none. The text ends in CR LF, so its last line is empty.
void ForEachLine(std::string_view lines,
                 const std::function<void(std::size_t number, const std::vector<std::string_view>& fields)>& each);

/// Adds an item that the server names, as long as the list holds fewer than player_limits::kMaxListItems.
void AddShown(ItemList& list, std::string text);

/// The text with "+" turned into a blank and "%" with the two characters after it into the byte of that hexadecimal
/// number; 0 where they are none. A "%" with fewer after it stays.
std::string UrlDecode(std::string_view text);

/// A server's activity log as it is shown: a tab for every comma, one line break for two. Of a long one the newest
/// lines are shown, after a first line that says so, and long lines are cut; see player_limits::kMaxLogBytes and the
/// next two.
std::string LogText(std::string_view text);

/// The number that `text` begins with (0 where it begins with none), as a whole number with at least `digits` digits.
std::string ZeroPadded(std::string_view text, int digits);

}  // namespace orbelcast
