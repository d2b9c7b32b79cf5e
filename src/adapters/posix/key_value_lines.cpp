#include "adapters/posix/key_value_lines.h"

#include <algorithm>

#include "toolkit/ascii.h"

namespace orbelcast {

std::vector<KeyValueLine> KeyValueLines(std::string_view text) {
  std::vector<KeyValueLine> lines;
  for (int number = 1; !text.empty(); ++number) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = Trimmed(text.substr(0, end), " \t\r");
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.empty() || line.starts_with('#')) continue;
    const std::size_t equals = line.find('=');
    lines.push_back({.number = number, .text = line, .key = Trimmed(line.substr(0, equals)), .value = {}});
    if (equals != std::string_view::npos) lines.back().value = Trimmed(line.substr(equals + 1));
  }
  return lines;
}

}  // namespace orbelcast
