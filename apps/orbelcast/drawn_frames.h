#pragma once

#include <functional>

#include "platform/jpeg_decoder.h"
#include "toolkit/surface.h"

namespace orbelcast {

/// Counts the frames that were drawn: a frame counts once, however many surfaces it is drawn on, and only if it could
/// be decoded.
class DrawnFrames final : public ForwardingJpegDecoder {
 public:
  using ForwardingJpegDecoder::ForwardingJpegDecoder;

  /// Called in the middle of drawing, after each new frame: short work that neither yields nor ends the control.
  std::function<void()> on_frame;

  int Count() const { return count_; }
  /// The newest frame that was drawn, as received; empty before the first.
  const FrameBytes& Newest() const { return newest_; }

  std::optional<Size> DrawOnAll(const FrameBytes& jpeg, std::span<const JpegTarget> targets) override;

 private:
  void Note(const FrameBytes& jpeg);

  FrameBytes newest_;
  int count_ = 0;
};

}  // namespace orbelcast
