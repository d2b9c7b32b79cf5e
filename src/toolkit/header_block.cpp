#include "toolkit/header_block.h"

#include "toolkit/ascii.h"

namespace orbelcast {

std::pair<std::string_view, std::string_view> SplitHeader(std::string_view line) {
  const std::size_t colon = line.find(':');
  if (colon == std::string_view::npos || colon == 0 || line.starts_with("HTTP/")) return {};
  return {Trimmed(line.substr(0, colon)), Trimmed(line.substr(colon + 1))};
}

std::optional<std::string_view> NextHeader(std::string_view& block, std::string_view name) {
  while (!block.empty()) {
    const std::size_t end = block.find("\r\n");
    const auto [found, value] = SplitHeader(block.substr(0, end));
    block.remove_prefix(end + 2);
    if (!found.empty() && EqualIgnoringCase(found, name)) return value;
  }
  return std::nullopt;
}

}  // namespace orbelcast
