#pragma once

#include "mosaic/mosaic_tile.h"
#include "platform/frame_bytes.h"
#include "platform/http_request.h"
#include "platform/jpeg_decoder.h"
#include "platform/platform.h"
#include "toolkit/controls.h"
#include "viewer/events.h"
#include "viewer/failure.h"
#include "viewer/motion_watch.h"
#include "viewer/status_strip.h"

namespace orbelcast {

/// The newest answer, as a picture in the video area: a stream's frame over the whole area, or a mosaic's tile in its
/// place.
class FrameView {
 public:
  struct Children {
    PictureBox& VideoStream;
    PictureBox& BuffPic;
    const PictureBox& IconNet;
  };

  FrameView(Children children, Platform& platform, VideoServerPushEvents& events, StatusStrip& strip,
            MotionWatch& motion);

  // ---- The newest answer ------------------------------------------------------------------------------------------

  /// Its body as received.
  const FrameBytes& Newest() const { return FrameBuffer; }
  void Take(HttpRequest& request) { FrameBuffer = request.ResponseBody(); }
  /// The failure of the newest request, or of its picture. Damage inside a picture is known once somebody has looked.
  Failure LastFailure() const;
  /// Notes the failure of `request`, if it failed; `worked`: whether each of its steps did.
  void NoteAnswer(HttpRequest& request, bool worked);
  void ForgetFailure();

  // ---- Drawing ----------------------------------------------------------------------------------------------------

  /// The area's size in pixels.
  Size AreaSize() const;
  /// Shows the newest answer in the whole area: counts it, draws it, and looks for motion. A redraw, with `SkipMotion`,
  /// is counted too, and nothing else is made of it.
  void Show(bool SkipMotion);
  /// Paints the picture of a failed request in the middle.
  void PaintNoAnswer();
  void PaintTile(const MosaicTile& tile, bool fetched);
  /// Marks the tile that is being fetched.
  void MarkTile(const MosaicTile& tile);
  void PaintBlack();

  // ---- The first frames of a connection ---------------------------------------------------------------------------

  bool HasShown() const { return FirstFrameShown; }
  /// From here on no frame has been shown.
  void Forget() { FirstFrameShown = false; }
  /// From here on the second new frame raises Connected once more.
  void ResetFirstFrames() { first_frames_ = 0; }

 private:
  bool Draw(bool with_thumbnail);
  void NoteDrawing(bool drawn);
  void CountFirstFrames();

  const Children on_;
  VideoServerPushEvents& events_;
  StatusStrip& strip_;
  MotionWatch& motion_;
  JpegDecoder& decoder_;
  const Screen& screen_;
  const TwipsScale scale_;  ///< The screen's, when the control was made.

  FrameBytes FrameBuffer;
  Failure failure_;
  bool newest_is_drawn_ = false;  ///< As far as can be told before somebody looks.
  bool FirstFrameShown = false;
  int first_frames_ = 0;  ///< New frames since they were reset, up to the second.
};

}  // namespace orbelcast
