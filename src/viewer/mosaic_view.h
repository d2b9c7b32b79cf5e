#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "mosaic/mosaic_round.h"
#include "mosaic/mosaic_tile.h"
#include "platform/http_request.h"
#include "toolkit/controls.h"
#include "viewer/events.h"
#include "viewer/frame_view.h"
#include "viewer/status_strip.h"
#include "viewer/stream.h"
#include "viewer/undertakings.h"

namespace orbelcast {

/// Several cameras as a grid in the video area, one tile a tick of `MultiCam`.
class MosaicView {
 public:
  struct Children {
    PictureBox& VideoStream;
    Timer& MasterTimer;
    Timer& MultiCam;
  };

  /// `lay_out` places the control's children.
  MosaicView(Children children, VideoServerPushEvents& events, Undertakings& undertakings, HttpRequestFactory& http,
             FrameView& frames, Stream& stream, std::function<void()> lay_out);

  /// `MultiCamView`. True once the grid is there; false where it did not come to that.
  bool Begin(const std::string& cameras);
  /// `MultiCam`'s tick.
  void Tick();

 private:
  std::optional<bool> FetchTile(const std::string& address, const Undertakings::Generation& mine);

  const Children on_;
  VideoServerPushEvents& events_;
  Undertakings& undertakings_;
  HttpRequestFactory& http_;
  FrameView& frames_;
  Stream& stream_;
  const std::function<void()> lay_out_;

  std::vector<std::string> cameras_;  ///< Their live addresses.
  MosaicRound round_;                 ///< Kept from one mosaic to the next.
};

}  // namespace orbelcast
