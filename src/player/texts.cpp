#include "player/texts.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <limits>
#include <utility>

#include "player/limits.h"
#include "protocol/limits.h"
#include "protocol/text.h"

namespace orbelcast {

namespace {

/// A character of UTF-8 is its first byte and those that continue it.
bool ContinuesCharacter(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

std::size_t BytesOfFirstCharacter(std::string_view text) {
  std::size_t bytes = text.empty() ? 0 : 1;
  while (bytes < text.size() && ContinuesCharacter(text[bytes])) ++bytes;
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

/// The place of the line break before the last `count` lines; npos where the text has no more than these.
std::size_t LineBreakBeforeLast(std::size_t count, std::string_view text) {
  std::size_t at = text.size();
  for (; count > 0; --count) {
    at = at == 0 ? std::string_view::npos : text.rfind('\n', at - 1);
    if (at == std::string_view::npos) break;
  }
  return at;
}

/// The newest lines of a log, its last, as many as are shown. They begin after all of the line breaks before them, so
/// that two belong together as they do in the whole.
std::string_view NewestOf(std::string_view log) {
  std::string_view newest = log.substr(log.size() - std::min(log.size(), player_limits::kMaxLogBytes));
  const bool is_cut = newest.size() < log.size();
  std::size_t before = LineBreakBeforeLast(player_limits::kMaxLogLines, newest);
  if (before == std::string_view::npos && is_cut) before = newest.find('\n');
  if (before == std::string_view::npos) {
    while (is_cut && !newest.empty() && ContinuesCharacter(newest.front())) newest.remove_prefix(1);
    return newest;
  }
  newest.remove_prefix(before + 1);
  while (newest.starts_with(kCrLf)) newest.remove_prefix(kCrLf.size());
  return newest;
}

/// Adds a line, cut where it is longer than is shown.
void AppendLine(std::string& text, std::string_view line) {
  const bool has_return = line.ends_with('\r');
  if (has_return) line.remove_suffix(1);
  if (line.size() <= player_limits::kMaxLogLineBytes) {
    text += line;
  } else {
    std::size_t end = player_limits::kMaxLogLineBytes;
    while (end > 0 && ContinuesCharacter(line[end])) --end;
    text.append(line.substr(0, end)).append("…");
  }
  if (has_return) text += '\r';
}

std::string NoteOf(std::size_t shown, std::size_t whole) {
  constexpr std::size_t kKibibyte = 1024;
  return "The newest " + std::to_string(shown / kKibibyte) + " of " + std::to_string(whole / kKibibyte) +
         " KiB are shown; what is older was left out.\r\n";
}

}  // namespace

void ForEachLine(std::string_view lines,
                 const std::function<void(std::size_t, const std::vector<std::string_view>&)>& each) {
  Parts rest(lines, kCrLf);
  std::size_t number = 0;
  for (std::string_view line; rest.Next(line); ++number) {
    each(number, Split(line, "\t", protocol_limits::kMaxListFields));
  }
}

void AddShown(ItemList& list, std::string text) {
  if (list.ListCount() < player_limits::kMaxListItems) list.AddItem(std::move(text));
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
  const std::string_view newest = NewestOf(text);
  std::string result;
  result.reserve(newest.size());
  Parts lines(newest, "\n");
  bool first = true;
  for (std::string_view line; lines.Next(line); first = false) {
    if (!first) result += '\n';
    AppendLine(result, line);
  }
  std::ranges::replace(result, ',', '\t');
  result = Replaced(result, "\r\n\r\n", kCrLf);
  return newest.size() == text.size() ? result : NoteOf(newest.size(), text.size()) + result;
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
