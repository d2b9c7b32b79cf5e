#pragma once

#include <cstdint>
#include <vector>

namespace orbelcast {

/// Doubles a picture's width and height, each new pixel mixed 9 : 3 : 3 : 1 of the four old ones around it: what
/// bilinear scaling comes to. A small camera in a large area is often shown at just this scale, and the general scalers
/// take twice the time for it.
class DoubleSize {
 public:
  /// `to` has twice as many pixels on each axis, `to_stride` pixels from row to row; of its rows only the first `rows`
  /// are drawn.
  void Draw(const std::uint32_t* from, int width, int height, std::uint32_t* to, std::ptrdiff_t to_stride, int rows);

 private:
  std::vector<std::uint32_t> rows_;
};

}  // namespace orbelcast
