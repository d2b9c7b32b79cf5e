#include "query.h"

#include <algorithm>
#include <charconv>
#include <system_error>

namespace orbelcast::camera_server {

std::string_view QueryValue(std::string_view target, std::string_view name) {
  std::string_view query = target.substr(std::min(target.find('?'), target.size()));
  while (!query.empty()) {
    query.remove_prefix(1);  // "?" or "&"
    const std::string_view item = query.substr(0, query.find('&'));
    query.remove_prefix(item.size());
    if (item.starts_with(name) && item.substr(name.size()).starts_with('=')) return item.substr(name.size() + 1);
  }
  return {};
}

std::optional<int> WholeNumber(std::string_view text) {
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || number < 0) return std::nullopt;
  return number;
}

}  // namespace orbelcast::camera_server
