#include "imaging/layout.h"

namespace orbelcast {

Box ThumbnailBox(float overlay_width, float overlay_height, float twips_x, float twips_y) {
  const float width = kMotionPictureWidth * twips_x;
  const float height = kMotionPictureHeight * twips_y;
  return {width - overlay_width - kMotionPictureMargin * twips_x,
          height - overlay_height - kMotionPictureMargin * twips_y, width, height};
}

Box OverlayBox(float twips_x, float twips_y) {
  return ThumbnailBox(kMotionPictureWidth * twips_x, kMotionPictureHeight * twips_y, twips_x, twips_y);
}

Box Centred(float width, float height, float area_width, float area_height) {
  return {(area_width - width) / 2, (area_height - height) / 2, width, height};
}

}  // namespace orbelcast
