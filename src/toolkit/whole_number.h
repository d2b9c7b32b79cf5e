#pragma once

#include <charconv>
#include <optional>
#include <string_view>

namespace orbelcast {

/// The text as a whole number, in decimal digits; nothing where it is anything else, or out of the type's range.
template <typename Number>
std::optional<Number> WholeNumber(std::string_view text) {
  Number number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

}  // namespace orbelcast
