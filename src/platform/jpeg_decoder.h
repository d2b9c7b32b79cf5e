#pragma once

#include "platform/frame_bytes.h"

namespace orbelcast {

class Surface;

/// Draws JPEG pictures onto surfaces.
///
/// The entropy-coded data of one frame (one `FrameBytes::Serial`) is decoded once, however many surfaces it is drawn
/// on. A picture that ends early, cannot be read, or has more than Surface::kMaxPixels draws nothing, and neither does
/// a large one while the process has many pixels already: the call answers false and the surface keeps what it had.
class JpegDecoder {
 public:
  virtual ~JpegDecoder() = default;

  /// Draws the picture stretched to `width` × `height` pixels at the top-left corner, clipped to the surface. Width and
  /// height 0 mean the picture's own size.
  virtual bool DrawJpeg(Surface& target, const FrameBytes& jpeg, int width, int height) = 0;

  /// Draws the picture stretched into the rectangle at (x, y), clipped to the surface.
  virtual bool DrawJpegAt(Surface& target, const FrameBytes& jpeg, int x, int y, int width, int height) = 0;

  /// Native size in pixels of the last picture that was decoded; 0 before the first.
  virtual int JpegWidth() const = 0;
  virtual int JpegHeight() const = 0;
};

/// Passes everything on to another decoder, which outlives it; what is derived from it changes a step or two.
class ForwardingJpegDecoder : public JpegDecoder {
 public:
  explicit ForwardingJpegDecoder(JpegDecoder& decoder) : decoder_(decoder) {}

  bool DrawJpeg(Surface& target, const FrameBytes& jpeg, int width, int height) override {
    return decoder_.DrawJpeg(target, jpeg, width, height);
  }
  bool DrawJpegAt(Surface& target, const FrameBytes& jpeg, int x, int y, int width, int height) override {
    return decoder_.DrawJpegAt(target, jpeg, x, y, width, height);
  }
  int JpegWidth() const override { return decoder_.JpegWidth(); }
  int JpegHeight() const override { return decoder_.JpegHeight(); }

 private:
  JpegDecoder& decoder_;
};

}  // namespace orbelcast
