#pragma once

#include <array>

#include "imaging/layout.h"
#include "imaging/motion.h"
#include "platform/jpeg_decoder.h"
#include "toolkit/controls.h"
#include "viewer/events.h"
#include "viewer/undertakings.h"

namespace orbelcast {

/// Motion detection in a viewer: its settings, its three pictures, and the events that report its results.
class MotionWatch {
 public:
  /// 0 the current thumbnail, 1 the reference, 2 the overlay that is shown.
  using Pictures = std::array<PictureBox, 3>;

  MotionWatch(Pictures& pictures, VideoServerPushEvents& events, const Undertakings& undertakings);

  bool detects = false;  ///< `MotionDetector`.
  bool shows = false;    ///< `ShowMotion`.
  MotionSettings settings;

  /// The target for a frame's thumbnail, to be drawn before its Scan.
  JpegTarget Thumbnail();
  /// Compares the thumbnail with the frame before and raises the events for motion. Yields after each sample. False
  /// where the undertaking that showed the frame is void.
  bool Scan();

  /// Hides the three pictures and puts them where they belong on a screen of that scale.
  void LayOut(TwipsScale scale);
  /// Shows the overlay where it is wanted, and hides it elsewhere.
  void ShowOverlay() { pictures_[2].Visible = detects && shows; }

 private:
  Pictures& pictures_;
  VideoServerPushEvents& events_;
  const Undertakings& undertakings_;
};

}  // namespace orbelcast
