#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace orbelcast {

/// Two small hexadecimal digits a byte.
inline std::string Hexadecimal(std::span<const std::uint8_t> bytes) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text;
  for (const std::uint8_t byte : bytes) {
    text += kDigits[byte >> 4];
    text += kDigits[byte & 0xf];
  }
  return text;
}

}  // namespace orbelcast
