#pragma once

#include <string_view>

namespace orbelcast::camera_server {

/// The value of the first item of that name in the query behind the target's first "?", or empty.
std::string_view QueryValue(std::string_view target, std::string_view name);

}  // namespace orbelcast::camera_server
