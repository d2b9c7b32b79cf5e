#pragma once

#include <memory>

#include "platform/frame_bytes.h"
#include "toolkit/surface.h"

/// The processing of one frame, from its bytes to the picture shown and the motion found in it, by the viewer and by
/// the libraries that a user would pick instead.
namespace orbelcast::bench {

/// One implementation of it. It is made for an area of one size, in pixels, and keeps what it can from frame to frame.
class Pipeline {
 public:
  virtual ~Pipeline() = default;
  /// Decodes a frame, draws it into the area, and compares a thumbnail of it with the last one's grey levels.
  virtual void Show(const FrameBytes& frame) = 0;
  /// The area's pixels.
  virtual Surface Shown() = 0;
};

/// libjpeg-turbo alone, at native size: no area, no motion. The unit of the measurements.
std::unique_ptr<Pipeline> BareDecode();
/// The viewer: the whole of its frame processing, driven by its interface.
std::unique_ptr<Pipeline> ViewerPipeline(int width, int height);
/// The decoder's two drawings and the motion scan by themselves, without a viewer around them.
std::unique_ptr<Pipeline> PartsPipeline(int width, int height);

// The peers; null where the build does not have them.
std::unique_ptr<Pipeline> OpenCvPipeline(int width, int height);
std::unique_ptr<Pipeline> FfmpegPipeline(int width, int height);

}  // namespace orbelcast::bench
