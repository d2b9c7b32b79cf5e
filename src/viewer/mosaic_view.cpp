#include "viewer/mosaic_view.h"

#include <chrono>
#include <utility>

#include "protocol/server_address.h"
#include "protocol/text.h"

namespace orbelcast {

namespace {

/// A camera's time limit within the round, from the request to its drawn picture.
constexpr std::chrono::milliseconds kTileLimit{5000};

/// The lines that have a line end. Text after the last one is no camera, and is left in `rest`.
std::vector<std::string> CamerasOf(const std::string& text, std::string& rest) {
  const auto lines = Split(text, kCrLf);
  if (lines.empty()) return {};
  rest = lines.back();
  return {lines.begin(), lines.end() - 1};
}

}  // namespace

MosaicView::MosaicView(Children children, VideoServerPushEvents& events, Undertakings& undertakings,
                       HttpRequestFactory& http, FrameView& frames, Stream& stream, std::function<void()> lay_out)
    : on_(children),
      events_(events),
      undertakings_(undertakings),
      http_(http),
      frames_(frames),
      stream_(stream),
      lay_out_(std::move(lay_out)) {}

bool MosaicView::Begin(const std::string& cameras) {
  if (cameras.empty()) {
    events_.AddressIgnored({});
    return false;
  }
  const auto mine = stream_.TakeOver();
  on_.VideoStream.Visible = true;
  on_.MasterTimer.Enabled = false;
  lay_out_();
  stream_.StopGettingFrames();
  on_.MultiCam.Enabled = true;
  if (!undertakings_.Yield(mine)) return false;
  frames_.PaintBlack();
  std::string ignored;
  cameras_ = CamerasOf(cameras, ignored);
  stream_.TakeOver();  // A tick that began with the list before ends.
  if (!ignored.empty()) events_.AddressIgnored(ignored);
  return true;
}

void MosaicView::Tick() {
  if (!on_.MultiCam.Enabled) return;
  const auto mine = undertakings_.Current();
  const auto cameras = static_cast<std::int32_t>(cameras_.size());
  if (round_.Begin(cameras)) {
    std::int32_t bytes = 0;
    std::int32_t rounds = 1;
    events_.StreamInfo(bytes, rounds);
    if (!mine.IsCurrent()) return;
  }
  const Size area = frames_.AreaSize();
  const std::int32_t index = round_.Next();
  const auto tile = PlaceTile(index, cameras, area.width, area.height);
  if (!tile) return;
  const std::string address =
      MosaicTileAddress(cameras_[static_cast<std::size_t>(index)], tile->requested_width, tile->requested_height);
  frames_.MarkTile(*tile);
  if (!undertakings_.Yield(mine)) return;
  const std::optional<bool> fetched = FetchTile(address, mine);
  if (!fetched) return;
  frames_.PaintTile(*tile, *fetched);
  round_.Painted();
  undertakings_.Yield(mine);
}

// Whether a picture has come; none where the mosaic is void. The thread is blocked meanwhile, where the platform does
// not let other handlers run during a synchronous request.
std::optional<bool> MosaicView::FetchTile(const std::string& address, const Undertakings::Generation& mine) {
  const auto request = http_.Create();
  request->Open("GET", address);
  request->LimitExchange(kTileLimit);
  request->Send();
  const bool answered = request->WaitForResponse(kTileLimit);
  if (!mine.IsCurrent()) return std::nullopt;
  frames_.NoteAnswer(*request, answered);
  frames_.Take(*request);
  return request->Status() == kHttpOk && frames_.Newest().Size() > 1;
}

}  // namespace orbelcast
