#include "query.h"

#include <algorithm>

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

}  // namespace orbelcast::camera_server
