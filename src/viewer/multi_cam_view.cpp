// Several cameras as a grid in the video area, one tile a tick.

#include <chrono>

#include "platform/rounding.h"
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
  const std::uint64_t mine = ++mosaics_;
  VideoStream.Visible = true;
  MasterTimer.Enabled = false;
  UserControl_Resize();
  StopGettingFrames();
  MultiCam.Enabled = true;
  Yield();
  // As with Connect, what the host began meanwhile takes over.
  if (!ShowsMosaic(mine)) return;
  PaintMosaicBlack();
  cameras_ = CamerasOf(inpString);
  ++mosaics_;  // A tick that began with the list before ends.
  StatusDisplay.Visible = false;
  show_bandwidth_ = false;
}

void VideoServerPush::PaintMosaicBlack() {
  Surface& area = VideoStream.Canvas(TwipsPerPixelX, TwipsPerPixelY);
  area.FillBox(0, 0, area.Width(), area.Height(), kBlack);
  VideoStream.Refresh();
}

void VideoServerPush::MultiCam_Timer() {
  const std::uint64_t mine = mosaics_;
  if (!ShowsMosaic(mine)) return;
  const auto cameras = static_cast<std::int32_t>(cameras_.size());
  if (mosaic_round_.Begin(cameras)) {
    std::int32_t bytes = 0;
    std::int32_t rounds = 1;
    Events.StreamInfo(bytes, rounds);
    if (!ShowsMosaic(mine)) return;
  }
  const std::int32_t width = RoundToEven(VideoStream.Width / static_cast<float>(TwipsPerPixelX));
  const std::int32_t height = RoundToEven(VideoStream.Height / static_cast<float>(TwipsPerPixelY));
  const std::int32_t index = mosaic_round_.Next();
  const auto tile = PlaceTile(index, cameras, width, height);
  if (!tile) return;
  const std::string address =
      MosaicTileAddress(cameras_[static_cast<std::size_t>(index)], tile->requested_width, tile->requested_height);
  VideoStream.Canvas(TwipsPerPixelX, TwipsPerPixelY)
      .FillBox(tile->x + kActivityNear, tile->y + kActivityNear, tile->x + kActivityFar, tile->y + kActivityFar,
               kActivity);
  VideoStream.Refresh();
  Yield();
  if (!ShowsMosaic(mine)) return;
  const bool fetched = FetchTile(address);
  if (!ShowsMosaic(mine)) return;
  PaintTile(*tile, fetched);
  VideoStream.Refresh();
  mosaic_round_.Painted();
  Yield();
}

// True when a picture has come. The thread stands still meanwhile: nothing else happens during a tile's request.
bool VideoServerPush::FetchTile(const std::string& address) {
  const auto request = platform_.http.Create();
  request->Open("GET", address);
  request->LimitExchange(kTileLimit);
  request->Send();
  request->WaitForResponse(kTileLimit);
  if (Terminating) return false;
  // Without an answer there is no body to take: the buffer keeps the one before.
  if (!request->Failed()) FrameBuffer = request->ResponseBody();
  return request->Status() == kHttpOk && FrameBuffer.Size() > 1;
}

void VideoServerPush::PaintTile(const MosaicTile& tile, bool fetched) {
  Surface& area = VideoStream.Canvas(TwipsPerPixelX, TwipsPerPixelY);
  if (!fetched) {
    area.FillBox(tile.x, tile.y, tile.x + tile.width, tile.y + tile.height, kBlack);
  } else if (tile.width > 0 && tile.height > 0) {
    platform_.jpeg_decoder.DrawJpegAt(area, FrameBuffer, tile.x, tile.y, tile.width, tile.height);
  }
}

}  // namespace orbelcast
