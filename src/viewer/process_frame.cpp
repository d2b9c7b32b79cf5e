// The road of one frame from FrameBuffer to the screen, and what its motion is told as.

#include <limits>

#include "platform/rounding.h"
#include "viewer/video_server_push.h"

namespace orbelcast {

namespace {

/// Side of the square that the thumbnail is drawn at, in pixels; the pictures that hold it cut it to 89 × 82.
constexpr int kThumbnailSide = 100;

/// A counter that would overflow keeps its value, as every failing step leaves things as they were.
void AddUnlessOverflow(std::int32_t& counter, std::size_t amount) {
  if (amount <= static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max() - counter)) {
    counter += static_cast<std::int32_t>(amount);
  }
}

}  // namespace

void VideoServerPush::ProcessFrame(bool SkipMotion) {
  if (!DrawFrame()) return;
  if (SkipMotion) return;
  if (motion_detector_) DetectMotion();
  if (!Terminating) CountFirstFrames();
}

bool VideoServerPush::DrawFrame() {
  if (MultiCam.Enabled || StreamStopped) return false;
  AddUnlessOverflow(BytesThisSecond, FrameBuffer.Size());
  AddUnlessOverflow(FramesThisSecond, 1);
  const int width = RoundToEven(VideoStream.Width / static_cast<float>(TwipsPerPixelX));
  const int height = RoundToEven(VideoStream.Height / static_cast<float>(TwipsPerPixelY));
  platform_.jpeg_decoder.DrawJpeg(VideoStream.Canvas(TwipsPerPixelX, TwipsPerPixelY), FrameBuffer, width, height);
  BuffPic.Width = static_cast<float>(platform_.screen.TwipsPerPixelX() * platform_.jpeg_decoder.JpegWidth());
  BuffPic.Height = static_cast<float>(platform_.screen.TwipsPerPixelY() * platform_.jpeg_decoder.JpegHeight());
  VideoStream.Refresh();
  if (!FirstFrameShown) VideoStream.Visible = true;
  FirstFrameShown = true;
  return true;
}

void VideoServerPush::DetectMotion() {
  Surface& current = MotionPicture[0].Canvas(TwipsPerPixelX, TwipsPerPixelY);
  platform_.jpeg_decoder.DrawJpeg(current, FrameBuffer, kThumbnailSide, kThumbnailSide);
  MotionPicture[0].Refresh();
  Surface& reference = MotionPicture[1].Canvas(TwipsPerPixelX, TwipsPerPixelY);
  Surface& overlay = MotionPicture[2].Canvas(TwipsPerPixelX, TwipsPerPixelY);
  const auto found = ScanMotion(current, reference, overlay, motion_, [this] { return Yield(); });
  if (!found) return;
  MotionPicture[2].Refresh();
  if (!found->Any()) return;
  MotionFound told = *found;
  Events.MotionArea(told.X1, told.Y1, told.X2, told.Y2);
  Events.MotionDetected(found->X1, found->Y1, found->X2, found->Y2);
  Events.MotionDetectedArea(told.Area);
}

void VideoServerPush::CountFirstFrames() {
  if (first_frames_ >= 2) return;
  if (++first_frames_ == 2) Events.Connected();
}

}  // namespace orbelcast
