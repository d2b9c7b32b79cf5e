#include "imaging/layout.h"

namespace orbelcast {

Box ThumbnailBox(float overlay_width, float overlay_height, TwipsScale scale) {
  const float width = scale.TwipsX(kMotionPictureWidth);
  const float height = scale.TwipsY(kMotionPictureHeight);
  return {width - overlay_width - scale.TwipsX(kMotionPictureMargin),
          height - overlay_height - scale.TwipsY(kMotionPictureMargin), width, height};
}

Box OverlayBox(TwipsScale scale) {
  return ThumbnailBox(scale.TwipsX(kMotionPictureWidth), scale.TwipsY(kMotionPictureHeight), scale);
}

Box Centred(float width, float height, float area_width, float area_height) {
  return {(area_width - width) / 2, (area_height - height) / 2, width, height};
}

}  // namespace orbelcast
