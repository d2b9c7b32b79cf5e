// The road of one frame from FrameBuffer to the screen, and what its motion is told as.

#include <array>
#include <limits>

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
  if (MultiCam.Enabled || StreamStopped) return;
  AddUnlessOverflow(BytesThisSecond, FrameBuffer.Size());
  AddUnlessOverflow(FramesThisSecond, 1);
  const bool watch = motion_detector_ && !SkipMotion;
  const bool drawn = DrawFrame(watch);
  if (!SkipMotion) NoteDrawing(drawn);
  VideoStream.Refresh();
  if (!FirstFrameShown) VideoStream.Visible = true;
  FirstFrameShown = true;
  if (watch && !DetectMotion()) return;
  if (!SkipMotion) CountFirstFrames();
}

// The thumbnail is drawn along with the picture, so that both come from one decoding.
bool VideoServerPush::DrawFrame(bool with_thumbnail) {
  const JpegTarget area{VideoStream.Canvas(), scale_.PixelsX(VideoStream.Width), scale_.PixelsY(VideoStream.Height)};
  const auto size =
      with_thumbnail
          ? platform_.jpeg_decoder.DrawOnAll(
                FrameBuffer, std::array{area, JpegTarget{MotionPicture[0].Canvas(), kThumbnailSide, kThumbnailSide}})
          : platform_.jpeg_decoder.DrawOn(area, FrameBuffer);
  if (!size) return false;
  const TwipsScale scale = TwipsScale::Of(platform_.screen);
  BuffPic.Width = scale.TwipsX(size->width);
  BuffPic.Height = scale.TwipsY(size->height);
  return true;
}

// What is not drawn because there was no good answer has failed by that.
void VideoServerPush::NoteDrawing(bool drawn) {
  if (drawn) {
    failure_ = {};
  } else if (failure_.kind == FailureKind::kNone) {
    const bool is_picture = platform_.jpeg_decoder.SizeOf(FrameBuffer).has_value();
    failure_.kind = is_picture ? FailureKind::kDamagedPicture : FailureKind::kNoPicture;
  }
}

// False where what showed the frame is void by now.
bool VideoServerPush::DetectMotion() {
  const Generation mine = generations_.Current();
  Surface& current = MotionPicture[0].Canvas();
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
