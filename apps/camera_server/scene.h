#pragma once

#include <cstddef>
#include <list>

#include "overlay.h"
#include "paint.h"
#include "settings.h"

namespace orbelcast::camera_server {

/// The drawn pictures of all cameras: a house by a road, each camera at a time of day of its own or that of the clock.
/// The background of a camera, size and time of day is drawn once and kept, the oldest given up when they need more
/// than kMaxBackgroundBytes. Used by one thread at a time.
class Scene {
 public:
  /// A picture of 32-bit pixels, blue first, as Cairo's RGB24 has them. Throws std::bad_alloc.
  CairoSurface Draw(int camera, int width, int height, const OverlayText& text, Light light);

 private:
  /// Which of a camera's looks a background has: its own, or that of a part of the day by the clock.
  using Look = int;
  struct Background {
    int camera;
    int width;
    int height;
    Look look;
    CairoSurface surface;
    std::size_t Bytes() const {
      return std::size_t{4} * static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    }
  };

  cairo_surface_t* BackgroundOf(int camera, int width, int height, Look look);

  std::list<Background> backgrounds_;  // the one used last first
  std::size_t background_bytes_ = 0;
};

}  // namespace orbelcast::camera_server
