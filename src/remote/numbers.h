#pragma once

#include <charconv>
#include <limits>
#include <string>
#include <string_view>

#include "remote/script_error.h"

namespace orbelcast {

/// A whole number as a script writes it. Throws ScriptError for anything else, and for one that is out of range; `what`
/// tells the person which number it was to be.
template <typename Number>
Number ParseWhole(std::string_view word, std::string_view what, Number least = std::numeric_limits<Number>::min(),
                  Number most = std::numeric_limits<Number>::max()) {
  Number number{};
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
  const bool whole = end == word.data() + word.size() && error != std::errc::invalid_argument;
  if (!whole) throw ScriptError(std::string(what) + " is to be a whole number, not '" + std::string(word) + "'");
  if (error != std::errc() || number < least || number > most) {
    throw ScriptError(std::string(what) + " goes from " + std::to_string(least) + " to " + std::to_string(most) +
                      ", which " + std::string(word) + " is outside of");
  }
  return number;
}

/// A number that may have decimals.
inline float ParseSingle(std::string_view word, std::string_view what) {
  float number{};
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number, std::chars_format::fixed);
  if (error != std::errc() || end != word.data() + word.size() || !(number >= std::numeric_limits<float>::lowest()) ||
      !(number <= std::numeric_limits<float>::max())) {
    throw ScriptError(std::string(what) + " is to be a number, not '" + std::string(word) + "'");
  }
  return number;
}

}  // namespace orbelcast
