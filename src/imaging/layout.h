#pragma once

#include "toolkit/twips.h"

namespace orbelcast {

/// A place in twips.
struct Box {
  float left = 0;
  float top = 0;
  float width = 0;
  float height = 0;
};

/// Size of the three motion pictures in pixels.
inline constexpr int kMotionPictureWidth = 89;
inline constexpr int kMotionPictureHeight = 82;
/// The width of the motion overlay's part outside the control's top and left edges, in pixels.
inline constexpr int kMotionPictureMargin = 5;

/// The place of a hidden thumbnail, given the overlay's current size in twips.
Box ThumbnailBox(float overlay_width, float overlay_height, TwipsScale scale);

/// The place of the motion overlay: the top-left corner, its first five rows and columns outside.
Box OverlayBox(TwipsScale scale);

/// A box of the given size in the middle of an area; outside it where the area is smaller.
Box Centred(float width, float height, float area_width, float area_height);

}  // namespace orbelcast
