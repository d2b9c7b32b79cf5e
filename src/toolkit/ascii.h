#pragma once

#include <algorithm>
#include <string>
#include <string_view>

/// Letters, blanks and control characters as protocols and files mean them: those of ASCII, whatever locale a host has
/// set. A byte beyond ASCII is none of them and stays as it is.
namespace orbelcast {

constexpr char LowerCase(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}
inline std::string LowerCase(std::string text) {
  std::ranges::transform(text, text.begin(), [](char letter) { return LowerCase(letter); });
  return text;
}

constexpr bool EqualIgnoringCase(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, [](char left, char right) { return LowerCase(left) == LowerCase(right); });
}
constexpr bool StartsWithIgnoringCase(std::string_view text, std::string_view beginning) {
  return EqualIgnoringCase(text.substr(0, beginning.size()), beginning);
}

/// The text without the blanks around it.
constexpr std::string_view Trimmed(std::string_view text, std::string_view blanks = " \t") {
  const std::size_t first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// A character that could begin a new line, or drive a terminal.
constexpr bool IsControl(char letter) {
  const auto byte = static_cast<unsigned char>(letter);
  return byte < 0x20 || byte == 0x7f;
}
constexpr bool HasControlCharacter(std::string_view text) {
  return std::ranges::any_of(text, IsControl);
}

}  // namespace orbelcast
