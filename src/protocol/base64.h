#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace orbelcast {

/// The bytes of `text` in Base64 (RFC 4648, with padding). The text's bytes are taken as they are: a name typed with
/// letters beyond ASCII is encoded as the UTF-8 that it is held in.
std::string EncodeBase64(std::string_view text);

/// Three bytes as four letters.
std::array<char, 4> EncodeBase64Group(std::uint8_t b0, std::uint8_t b1, std::uint8_t b2);

// Shifts of one byte; the left ones keep its low 8 bits.
constexpr std::uint8_t ShiftLeft2(std::uint8_t byte) {
  return static_cast<std::uint8_t>(byte << 2);
}
constexpr std::uint8_t ShiftLeft4(std::uint8_t byte) {
  return static_cast<std::uint8_t>(byte << 4);
}
constexpr std::uint8_t ShiftRight2(std::uint8_t byte) {
  return static_cast<std::uint8_t>(byte >> 2);
}
constexpr std::uint8_t ShiftRight4(std::uint8_t byte) {
  return static_cast<std::uint8_t>(byte >> 4);
}
constexpr std::uint8_t ShiftRight6(std::uint8_t byte) {
  return static_cast<std::uint8_t>(byte >> 6);
}

}  // namespace orbelcast
