#pragma once

#include <vector>

#include "toolkit/surface.h"

namespace orbelcast {

/// Surfaces that are out of use, kept for the next picture of the same size: frames of a few sizes in turn (several
/// cameras, several viewers) need no memory of their own.
class SurfacePool {
 public:
  /// Surfaces kept at most, and the pixels of all of them: two rows of cameras, or one full-size picture of 16
  /// megapixels.
  static constexpr std::size_t kMaxSurfaces = 8;
  static constexpr std::int64_t kMaxPixels = 16LL * 1024 * 1024;

  /// A surface of that size with anything on it; empty where the size is refused.
  Surface Take(int width, int height);
  void Give(Surface surface);

 private:
  std::vector<Surface> surfaces_;  // the one given last at the end
};

}  // namespace orbelcast
