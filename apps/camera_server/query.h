#pragma once

#include <optional>
#include <string_view>

namespace orbelcast::camera_server {

/// The value of the first item of that name in the query behind the target's first "?", or empty.
std::string_view QueryValue(std::string_view target, std::string_view name);

/// A number of 0 or more, of digits and nothing else; nothing for any other text, and for one beyond an int.
std::optional<int> WholeNumber(std::string_view text);

}  // namespace orbelcast::camera_server
