#include "viewer/motion_watch.h"

namespace orbelcast {

namespace {

/// Side of the square that the thumbnail is drawn at, in pixels; the pictures that hold it cut it to their size.
constexpr int kThumbnailSide = 100;

void HideAt(PictureBox& picture, const Box& box) {
  picture.Visible = false;
  Place(picture, box.left, box.top, box.width, box.height);
}

}  // namespace

MotionWatch::MotionWatch(Pictures& pictures, VideoServerPushEvents& events, const Undertakings& undertakings)
    : pictures_(pictures), events_(events), undertakings_(undertakings) {}

JpegTarget MotionWatch::Thumbnail() {
  return {pictures_[0].Canvas(), kThumbnailSide, kThumbnailSide};
}

bool MotionWatch::Scan() {
  const auto mine = undertakings_.Current();
  pictures_[0].Refresh();
  const Surface& current = pictures_[0].Image();
  const auto found = ScanMotion(current, pictures_[1].Canvas(), pictures_[2].Canvas(), settings,
                                [&, turn = 0u]() mutable { return undertakings_.YieldInTurn(turn++, mine); });
  if (!found) return false;
  pictures_[2].Refresh();
  if (!found->Any()) return true;
  MotionFound told = *found;
  events_.MotionArea(told.X1, told.Y1, told.X2, told.Y2);
  if (!mine.IsCurrent()) return false;
  events_.MotionDetected(found->X1, found->Y1, found->X2, found->Y2);
  if (!mine.IsCurrent()) return false;
  events_.MotionDetectedArea(told.Area);
  return mine.IsCurrent();
}

void MotionWatch::LayOut(TwipsScale scale) {
  for (const std::size_t hidden : {0u, 1u}) {
    HideAt(pictures_[hidden], ThumbnailBox(pictures_[2].Width, pictures_[2].Height, scale));
  }
  HideAt(pictures_[2], OverlayBox(scale));
}

}  // namespace orbelcast
