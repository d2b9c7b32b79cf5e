#pragma once

#include <optional>
#include <string_view>

#include "platform/size.h"

namespace orbelcast {

/// The largest side that makes sense to ask for: that of an 8K screen.
inline constexpr int kMaxSide = 8192;

/// WIDTHxHEIGHT, each side `least` to kMaxSide pixels; nothing where the text is anything else.
std::optional<Size> ReadPixelSize(std::string_view text, int least = 1);

}  // namespace orbelcast
