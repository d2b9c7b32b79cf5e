// Where the children sit.

#include "imaging/layout.h"
#include "viewer/video_server_push.h"

namespace orbelcast {

namespace {

void PlaceAt(ChildControl& control, const Box& box) {
  Place(control, box.left, box.top, box.width, box.height);
}

}  // namespace

void VideoServerPush::Resize(float width, float height) {
  width_ = width;
  height_ = height;
  // The strip is docked: it follows before the layout runs.
  DockStatusDisplay();
  UserControl_Resize();
}

void VideoServerPush::DockStatusDisplay() {
  StatusDisplay.Left = 0;
  StatusDisplay.Width = width_;
  StatusDisplay.Top = height_ - StatusDisplay.Height;
}

void VideoServerPush::UserControl_Resize() {
  if (Terminating) return;
  const auto alive = StayAlive();
  lStatus.Width = StatusDisplay.Width - lStatus.Left;
  TimeRetrieve.Width = lStatus.Width;
  lStatus.Top = 0;
  TimeRetrieve.Top = lStatus.Top + lStatus.Height;
  Place(Mira, 0, 0, width_, height_);
  Place(VideoStream, Mira.Left, Mira.Top, Mira.Width, Mira.Height);
  if (VideoStream.Visible) ProcessFrame(true);

  const TwipsScale scale = TwipsScale::Of(platform_.screen);
  for (const std::size_t thumbnail : {0u, 1u}) {
    MotionPicture[thumbnail].Visible = false;
    PlaceAt(MotionPicture[thumbnail], ThumbnailBox(MotionPicture[2].Width, MotionPicture[2].Height, scale));
  }
  MotionPicture[2].Visible = false;
  PlaceAt(MotionPicture[2], OverlayBox(scale));
  const Box warning = Centred(WarningFrame.Width, WarningFrame.Height, width_, height_);
  WarningFrame.Left = warning.left;
  WarningFrame.Top = warning.top;
  MotionPicture[2].Visible = motion_detector_ && show_motion_;
}

}  // namespace orbelcast
