#pragma once

namespace orbelcast {

/// A size in pixels.
struct Size {
  int width = 0;
  int height = 0;
};

}  // namespace orbelcast
