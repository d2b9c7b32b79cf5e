#include "adapters/jpeg/surface_pool.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <utility>

namespace orbelcast {

namespace {

std::int64_t PixelsOf(const Surface& surface) {
  return static_cast<std::int64_t>(surface.Width()) * surface.Height();
}

}  // namespace

Surface SurfacePool::Take(int width, int height) {
  // The one used last is the likeliest to be in the processor's cache.
  const auto found = std::find_if(surfaces_.rbegin(), surfaces_.rend(), [=](const Surface& kept) {
    return kept.Width() == width && kept.Height() == height;
  });
  if (found == surfaces_.rend()) return {width, height};
  Surface surface = std::move(*found);
  surfaces_.erase(std::next(found).base());
  return surface;
}

void SurfacePool::Give(Surface surface) {
  if (surface.Empty()) return;
  surfaces_.push_back(std::move(surface));
  const auto pixels = [this] {
    return std::accumulate(surfaces_.begin(), surfaces_.end(), std::int64_t{0},
                           [](std::int64_t sum, const Surface& kept) { return sum + PixelsOf(kept); });
  };
  while (surfaces_.size() > kMaxSurfaces || pixels() > kMaxPixels) surfaces_.erase(surfaces_.begin());
}

}  // namespace orbelcast
