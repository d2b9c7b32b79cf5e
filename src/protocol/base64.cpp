#include "protocol/base64.h"

#include <algorithm>

namespace orbelcast {

namespace {

constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

std::uint8_t ByteAt(std::string_view text, std::size_t place) {
  return static_cast<std::uint8_t>(text[place]);
}

}  // namespace

std::string EncodeBase64(std::string_view text) {
  const std::size_t groups = text.size() / 3;
  std::string output(groups * 4, ' ');
  for (std::size_t k = 0; k < groups; ++k) {
    const auto group = EncodeBase64Group(ByteAt(text, 3 * k), ByteAt(text, 3 * k + 1), ByteAt(text, 3 * k + 2));
    std::ranges::copy(group, output.begin() + static_cast<std::ptrdiff_t>(4 * k));
  }
  const std::string_view rest = text.substr(groups * 3);
  if (rest.size() == 1) {
    const auto group = EncodeBase64Group(ByteAt(rest, 0), 0, 0);
    output.append(group.data(), 2).append("==");
  } else if (rest.size() == 2) {
    const auto group = EncodeBase64Group(ByteAt(rest, 0), ByteAt(rest, 1), 0);
    output.append(group.data(), 3).append("=");
  }
  return output;
}

std::array<char, 4> EncodeBase64Group(std::uint8_t b0, std::uint8_t b1, std::uint8_t b2) {
  return {kAlphabet[ShiftRight2(b0)], kAlphabet[ShiftLeft4(b0 & 3) | ShiftRight4(b1)],
          kAlphabet[ShiftLeft2(b1 & 15) | ShiftRight6(b2)], kAlphabet[b2 & 63]};
}

}  // namespace orbelcast
