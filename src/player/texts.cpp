#include "player/texts.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <limits>

#include "player/limits.h"
#include "protocol/text.h"

namespace orbelcast {

namespace {

/// A character of UTF-8 is its first byte and those that continue it.
std::size_t BytesOfFirstCharacter(std::string_view text) {
  std::size_t bytes = text.empty() ? 0 : 1;
  while (bytes < text.size() && (static_cast<unsigned char>(text[bytes]) & 0xC0) == 0x80) ++bytes;
  return bytes;
}

int HexadecimalDigit(char digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
  if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
  return -1;
}

char ByteOf(std::string_view digits) {
  if (digits.size() != 2) return '\0';
  const int high = HexadecimalDigit(digits[0]);
  const int low = HexadecimalDigit(digits[1]);
  return high < 0 || low < 0 ? '\0' : static_cast<char>(high * 16 + low);
}

}  // namespace

void ForEachLine(std::string_view lines,
                 const std::function<void(std::size_t, const std::vector<std::string_view>&)>& each) {
  Parts rest(lines, kCrLf);
  std::size_t number = 0;
  for (std::string_view line; number < player_limits::kMaxListLines && rest.Next(line); ++number) {
    each(number, Split(line, "\t"));
  }
}

std::string UrlDecode(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    const char first = text.front();
    text.remove_prefix(1);
    if (first == '+') {
      result += ' ';
      continue;
    }
    const std::size_t one = BytesOfFirstCharacter(text);
    const std::size_t another = BytesOfFirstCharacter(text.substr(one));
    if (first == '%' && another > 0) {
      result += ByteOf(text.substr(0, one + another));
      text.remove_prefix(one + another);
    } else {
      result += first;
    }
  }
  return result;
}

std::string LogText(std::string_view text) {
  std::string result(text);
  std::ranges::replace(result, ',', '\t');
  return Replaced(result, "\r\n\r\n", kCrLf);
}

std::string ZeroPadded(std::string_view text, int digits) {
  double number = std::round(LeadingNumber(text).value_or(0));
  if (number == 0) number = 0;  // no "-00"
  std::array<char, std::numeric_limits<double>::max_exponent10 + 8> written{};
  const int width = number < 0 ? digits + 1 : digits;
  std::snprintf(written.data(), written.size(), "%0*.0f", width, number);
  return written.data();
}

}  // namespace orbelcast
