#include "toolkit/visible_text.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>

namespace orbelcast {

namespace {

/// A character at the beginning of a text: its bytes and its number. A byte that is not UTF-8 is a character of its
/// own.
struct Character {
  std::size_t bytes = 1;
  std::uint32_t code = 0;
  bool valid = true;
};

Character FirstOf(std::string_view text) {
  const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(text[at]); };
  const unsigned first = byte(0);
  if (first < 0x80) return {1, first};
  const std::size_t length = first >= 0xf0 ? 4 : first >= 0xe0 ? 3 : 2;
  if (first < 0xc2 || first > 0xf4 || text.size() < length) return {1, first, false};
  std::uint32_t code = first & (0xffU >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xc0U) != 0x80) return {1, first, false};
    code = code << 6 | (byte(i) & 0x3fU);
  }
  constexpr std::array<std::uint32_t, 5> kLeast{0, 0, 0x80, 0x800, 0x10000};
  const bool surrogate = code >= 0xd800 && code <= 0xdfff;
  if (code < kLeast[length] || code > 0x10ffff || surrogate) return {1, first, false};
  return {length, code};
}

constexpr bool IsHidden(std::uint32_t code) {
  const bool control = code < 0x20 || (code >= 0x7f && code <= 0x9f);
  const bool mark = code == 0x61c || code == 0x200e || code == 0x200f;
  const bool direction = (code >= 0x202a && code <= 0x202e) || (code >= 0x2066 && code <= 0x2069);
  return control || mark || direction;
}

template <typename Replace>
std::string Replaced(std::string_view text, Replace replace) {
  std::string shown;
  shown.reserve(text.size());
  while (!text.empty()) {
    const Character character = FirstOf(text);
    if (!IsHidden(character.code) || !replace(character, shown)) shown += text.substr(0, character.bytes);
    text.remove_prefix(character.bytes);
  }
  return shown;
}

}  // namespace

std::string WithoutControls(std::string_view text, char with) {
  return Replaced(text, [with](const Character&, std::string& shown) {
    shown += with;
    return true;
  });
}

std::string JsonWithoutControls(std::string_view json) {
  return Replaced(json, [](const Character& character, std::string& shown) {
    if (character.code < 0x7f || !character.valid) return false;
    std::array<char, 16> escape{};  // room for any number, though these have four digits
    std::snprintf(escape.data(), escape.size(), "\\u%04x", static_cast<unsigned>(character.code));
    shown += escape.data();
    return true;
  });
}

}  // namespace orbelcast
