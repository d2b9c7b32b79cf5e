// Several cameras as a grid in the video area, one tile a tick.

#include <chrono>
#include <optional>

#include "protocol/server_address.h"
#include "protocol/text.h"
#include "viewer/video_server_push.h"

namespace orbelcast {

namespace {

/// What a camera may cost the round, from asking to its picture.
constexpr std::chrono::milliseconds kTileLimit{5000};
constexpr Color kBlack = Rgb(0, 0, 0);
/// Marks the tile that is being fetched.
constexpr Color kActivity = Rgb(0, 255, 0);
constexpr int kActivityNear = 2;
constexpr int kActivityFar = 5;

/// The lines that are ended: what follows the last line end is no camera.
std::vector<std::string> CamerasOf(const std::string& text) {
  const auto lines = Split(text, kCrLf);
  return {lines.begin(), lines.empty() ? lines.end() : lines.end() - 1};
}

}  // namespace

void VideoServerPush::MultiCamView(std::string inpString) {
  if (inpString.empty()) return;
  const auto alive = StayAlive();
  const Generation mine = TakeOver();
  VideoStream.Visible = true;
  MasterTimer.Enabled = false;
  UserControl_Resize();
  StopGettingFrames();
  MultiCam.Enabled = true;
  if (!Yield(mine)) return;
  PaintMosaicBlack();
  cameras_ = CamerasOf(inpString);
  TakeOver();  // A tick that began with the list before ends.
  StatusDisplay.Visible = false;
  show_bandwidth_ = false;
}

void VideoServerPush::PaintMosaicBlack() {
  Surface& area = VideoStream.Canvas();
  area.FillBox(0, 0, area.Width(), area.Height(), kBlack);
  VideoStream.Refresh();
}

void VideoServerPush::MultiCam_Timer() {
  if (!MultiCam.Enabled) return;
  const Generation mine = generations_.Current();
  const auto cameras = static_cast<std::int32_t>(cameras_.size());
  if (mosaic_round_.Begin(cameras)) {
    std::int32_t bytes = 0;
    std::int32_t rounds = 1;
    Events.StreamInfo(bytes, rounds);
    if (!mine.IsCurrent()) return;
  }
  const std::int32_t width = scale_.PixelsX(VideoStream.Width);
  const std::int32_t height = scale_.PixelsY(VideoStream.Height);
  const std::int32_t index = mosaic_round_.Next();
  const auto tile = PlaceTile(index, cameras, width, height);
  if (!tile) return;
  const std::string address =
      MosaicTileAddress(cameras_[static_cast<std::size_t>(index)], tile->requested_width, tile->requested_height);
  VideoStream.Canvas().FillBox(tile->x + kActivityNear, tile->y + kActivityNear, tile->x + kActivityFar,
                               tile->y + kActivityFar, kActivity);
  VideoStream.Refresh();
  if (!Yield(mine)) return;
  const std::optional<bool> fetched = FetchTile(address, mine);
  if (!fetched) return;
  PaintTile(*tile, *fetched);
  VideoStream.Refresh();
  mosaic_round_.Painted();
  Yield(mine);
}

// Whether a picture has come; none where the mosaic is void. The thread stands still meanwhile, where the platform does
// not let other handlers run during a synchronous request.
std::optional<bool> VideoServerPush::FetchTile(const std::string& address, const Generation& mine) {
  const auto request = platform_.http.Create();
  request->Open("GET", address);
  request->LimitExchange(kTileLimit);
  request->Send();
  const bool answered = request->WaitForResponse(kTileLimit);
  if (!mine.IsCurrent()) return std::nullopt;
  failure_ = FailureOf(*request, answered);
  FrameBuffer = request->ResponseBody();
  return request->Status() == kHttpOk && FrameBuffer.Size() > 1;
}

void VideoServerPush::PaintTile(const MosaicTile& tile, bool fetched) {
  Surface& area = VideoStream.Canvas();
  if (!fetched) {
    area.FillBox(tile.x, tile.y, tile.x + tile.width, tile.y + tile.height, kBlack);
    NoteDrawing(false);
  } else if (tile.width > 0 && tile.height > 0) {
    const JpegTarget target{area, tile.width, tile.height, tile.x, tile.y};
    NoteDrawing(platform_.jpeg_decoder.DrawOn(target, FrameBuffer).has_value());
  }
}

}  // namespace orbelcast
