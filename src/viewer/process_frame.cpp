// The road of one frame from FrameBuffer to the screen, and what its motion is told as.

#include <limits>

#include "toolkit/rounding.h"
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
  if (!DrawFrame() || SkipMotion) return;
  if (motion_detector_ && !DetectMotion()) return;
  CountFirstFrames();
}

bool VideoServerPush::DrawFrame() {
  if (MultiCam.Enabled || StreamStopped) return false;
  AddUnlessOverflow(BytesThisSecond, FrameBuffer.Size());
  AddUnlessOverflow(FramesThisSecond, 1);
  const int width = RoundToEven(VideoStream.Width / static_cast<float>(TwipsPerPixelX));
  const int height = RoundToEven(VideoStream.Height / static_cast<float>(TwipsPerPixelY));
  platform_.jpeg_decoder.DrawJpeg(VideoStream.Canvas(), FrameBuffer, width, height);
  BuffPic.Width = static_cast<float>(platform_.screen.TwipsPerPixelX() * platform_.jpeg_decoder.JpegWidth());
  BuffPic.Height = static_cast<float>(platform_.screen.TwipsPerPixelY() * platform_.jpeg_decoder.JpegHeight());
  VideoStream.Refresh();
  if (!FirstFrameShown) VideoStream.Visible = true;
  FirstFrameShown = true;
  return true;
}

// False where what showed the frame is void by now.
bool VideoServerPush::DetectMotion() {
  const Generation mine = generations_.Current();
  Surface& current = MotionPicture[0].Canvas();
  platform_.jpeg_decoder.DrawJpeg(current, FrameBuffer, kThumbnailSide, kThumbnailSide);
  MotionPicture[0].Refresh();
  Surface& reference = MotionPicture[1].Canvas();
  Surface& overlay = MotionPicture[2].Canvas();
  const auto found = ScanMotion(current, reference, overlay, motion_, [&] { return Yield(mine); });
  if (!found) return false;
  MotionPicture[2].Refresh();
  if (!found->Any()) return true;
  MotionFound told = *found;
  Events.MotionArea(told.X1, told.Y1, told.X2, told.Y2);
  if (!mine.IsCurrent()) return false;
  Events.MotionDetected(found->X1, found->Y1, found->X2, found->Y2);
  if (!mine.IsCurrent()) return false;
  Events.MotionDetectedArea(told.Area);
  return mine.IsCurrent();
}

void VideoServerPush::CountFirstFrames() {
  if (first_frames_ >= 2) return;
  if (++first_frames_ == 2) Events.Connected();
}

}  // namespace orbelcast
