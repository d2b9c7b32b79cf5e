#include "viewer/frame_view.h"

#include <array>

namespace orbelcast {

namespace {

constexpr Color kBlack = Rgb(0, 0, 0);
constexpr Color kActivity = Rgb(0, 255, 0);
/// Corners of the activity mark in its tile, in pixels.
constexpr int kActivityNear = 2;
constexpr int kActivityFar = 5;

}  // namespace

FrameView::FrameView(Children children, Platform& platform, VideoServerPushEvents& events, StatusStrip& strip,
                     MotionWatch& motion)
    : on_(children),
      events_(events),
      strip_(strip),
      motion_(motion),
      decoder_(platform.jpeg_decoder),
      screen_(platform.screen),
      scale_(TwipsScale::Of(platform.screen)) {}

Size FrameView::AreaSize() const {
  return {scale_.PixelsX(on_.VideoStream.Width), scale_.PixelsY(on_.VideoStream.Height)};
}

void FrameView::Show(bool SkipMotion) {
  strip_.CountFrame(FrameBuffer.Size());
  const bool watch = motion_.detects && !SkipMotion;
  const bool drawn = Draw(watch);
  if (!SkipMotion) NoteDrawing(drawn);
  on_.VideoStream.Refresh();
  if (!FirstFrameShown) on_.VideoStream.Visible = true;
  FirstFrameShown = true;
  if (SkipMotion) return;
  if (watch && !motion_.Scan()) return;
  CountFirstFrames();
}

// The thumbnail goes along with the picture, so that both come from one decoding.
bool FrameView::Draw(bool with_thumbnail) {
  const auto [width, height] = AreaSize();
  const JpegTarget area{on_.VideoStream.Canvas(), width, height};
  const auto size = with_thumbnail ? decoder_.DrawWhenSeen(FrameBuffer, std::array{area, motion_.Thumbnail()})
                                   : decoder_.DrawWhenSeen(FrameBuffer, std::array{area});
  if (!size) return false;
  const TwipsScale now = TwipsScale::Of(screen_);
  on_.BuffPic.Width = now.TwipsX(size->width);
  on_.BuffPic.Height = now.TwipsY(size->height);
  return true;
}

Failure FrameView::LastFailure() const {
  if (newest_is_drawn_ && on_.VideoStream.Image().NewestWasDamaged()) return {.kind = FailureKind::kDamagedPicture};
  return failure_;
}

void FrameView::NoteAnswer(HttpRequest& request, bool worked) {
  failure_ = FailureOf(request, worked);
  newest_is_drawn_ = false;
}

void FrameView::ForgetFailure() {
  failure_ = {};
  newest_is_drawn_ = false;
}

// A failed answer keeps its failure, whatever its body is.
void FrameView::NoteDrawing(bool drawn) {
  newest_is_drawn_ = drawn;
  if (drawn) {
    failure_ = {};
  } else if (failure_.kind == FailureKind::kNone) {
    failure_.kind = decoder_.SizeOf(FrameBuffer) ? FailureKind::kDamagedPicture : FailureKind::kNoPicture;
  }
}

void FrameView::CountFirstFrames() {
  if (first_frames_ >= 2) return;
  if (++first_frames_ == 2) events_.Connected();
}

void FrameView::PaintNoAnswer() {
  const float left = on_.VideoStream.Width / 2 - on_.IconNet.Width / 2;
  const float top = on_.VideoStream.Height / 2 - on_.IconNet.Height / 2;
  on_.VideoStream.Canvas().Draw(on_.IconNet.Picture(), scale_.PixelsX(left), scale_.PixelsY(top));
  on_.VideoStream.Refresh();
}

void FrameView::PaintTile(const MosaicTile& tile, bool fetched) {
  Surface& area = on_.VideoStream.Canvas();
  if (!fetched) {
    area.FillBox(tile.x, tile.y, tile.x + tile.width, tile.y + tile.height, kBlack);
    NoteDrawing(false);
  } else if (tile.width > 0 && tile.height > 0) {
    const JpegTarget place{area, tile.width, tile.height, tile.x, tile.y};
    NoteDrawing(decoder_.DrawWhenSeen(FrameBuffer, std::array{place}).has_value());
  }
  on_.VideoStream.Refresh();
}

void FrameView::MarkTile(const MosaicTile& tile) {
  on_.VideoStream.Canvas().FillBox(tile.x + kActivityNear, tile.y + kActivityNear, tile.x + kActivityFar,
                                   tile.y + kActivityFar, kActivity);
  on_.VideoStream.Refresh();
}

void FrameView::PaintBlack() {
  on_.VideoStream.Canvas().Fill(kBlack);
  on_.VideoStream.Refresh();
}

}  // namespace orbelcast
