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
/// How far the motion overlay stands out of the control's top-left corner, in pixels.
inline constexpr int kMotionPictureMargin = 5;

/// Where a hidden thumbnail goes, given the overlay's size in twips as it is at that moment.
Box ThumbnailBox(float overlay_width, float overlay_height, TwipsScale scale);

/// Where the motion overlay goes: the top-left corner, its first five rows and columns outside.
Box OverlayBox(TwipsScale scale);

/// A box of the given size in the middle of an area; outside it where the area is smaller.
Box Centred(float width, float height, float area_width, float area_height);

}  // namespace orbelcast
