#pragma once

#include <optional>
#include <string_view>

namespace orbelcast {

struct PixelSize {
  int width = 0;
  int height = 0;
};

/// The largest side that makes sense to ask for: that of an 8K screen.
inline constexpr int kMaxSide = 8192;

/// WIDTHxHEIGHT, each side `least` to kMaxSide pixels; nothing where the text is anything else.
std::optional<PixelSize> ReadPixelSize(std::string_view text, int least = 1);

}  // namespace orbelcast
