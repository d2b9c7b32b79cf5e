// Any bytes as Base64 and back, by a decoder that goes bit by bit.

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "protocol/base64.h"

namespace {

std::string Decode(std::string_view encoded) {
  constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string decoded;
  std::uint32_t bits = 0;
  int count = 0;
  for (const char letter : encoded.substr(0, encoded.find('='))) {
    const std::size_t value = kAlphabet.find(letter);
    if (value == std::string_view::npos) std::abort();
    bits = bits << 6 | static_cast<std::uint32_t>(value);
    count += 6;
    if (count < 8) continue;
    count -= 8;
    decoded += static_cast<char>(bits >> count & 0xff);
  }
  return decoded;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const std::string encoded = orbelcast::EncodeBase64(text);
  if (encoded.size() != (size + 2) / 3 * 4 || Decode(encoded) != text) std::abort();
  return 0;
}
