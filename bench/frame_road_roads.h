#pragma once

#include <memory>

#include "platform/frame_bytes.h"
#include "toolkit/surface.h"

/// The road of one frame, from its bytes to the picture shown and what moved in it, by the viewer and by what a user
/// would pick instead.
namespace orbelcast::bench {

/// One way to do it. It is made for an area of one size, in pixels, and keeps what it can from frame to frame.
class Road {
 public:
  virtual ~Road() = default;
  /// Decodes a frame, draws it into the area, and compares a thumbnail of it with the last one's grey levels.
  virtual void Show(const FrameBytes& frame) = 0;
  /// What the area shows.
  virtual Surface Shown() = 0;
};

/// libjpeg-turbo alone, at native size: no area, no motion. What everything is measured in.
std::unique_ptr<Road> BareDecode();
/// The viewer: the whole of its frame processing, driven by its interface.
std::unique_ptr<Road> ViewerRoad(int width, int height);
/// The decoder's two drawings and the motion scan by themselves, without a viewer around them.
std::unique_ptr<Road> PartsRoad(int width, int height);

// The peers; null where the build has them not.
std::unique_ptr<Road> OpenCvRoad(int width, int height);
std::unique_ptr<Road> FfmpegRoad(int width, int height);

}  // namespace orbelcast::bench
