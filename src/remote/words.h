#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace orbelcast {

/// The words of one line of a script; none for a blank line or a comment (its first character that is no blank is "#").
///
/// Words are separated by blanks (space, tab, carriage return). Between double quotes, which may also begin in the
/// middle of a word (`Username="John Smith"`), blanks belong to the word and a backslash makes \n, \r, \t, \" or \\.
/// Outside of them it is an ordinary character. Throws ScriptError for a quote that does not end or another escape.
std::vector<std::string> SplitWords(std::string_view line);

}  // namespace orbelcast
