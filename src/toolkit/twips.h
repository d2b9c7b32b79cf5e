#pragma once

#include "platform/screen.h"
#include "toolkit/rounding.h"

namespace orbelcast {

/// A screen's scale: how many twips a pixel has in each direction. Lengths in twips are single precision.
struct TwipsScale {
  int x = 15;
  int y = 15;

  /// The scale of `screen` as it is now; at least one twip a pixel.
  static TwipsScale Of(const Screen& screen);

  float TwipsX(int pixels) const { return static_cast<float>(pixels * x); }
  float TwipsY(int pixels) const { return static_cast<float>(pixels * y); }
  /// Rounded to nearest, ties to even.
  std::int32_t PixelsX(float twips) const { return RoundToEven(twips / static_cast<float>(x)); }
  std::int32_t PixelsY(float twips) const { return RoundToEven(twips / static_cast<float>(y)); }
};

inline TwipsScale TwipsScale::Of(const Screen& screen) {
  const auto at_least_one = [](int twips) { return twips > 0 ? twips : 1; };
  return {at_least_one(screen.TwipsPerPixelX()), at_least_one(screen.TwipsPerPixelY())};
}

}  // namespace orbelcast
