#include "drawn_frames.h"

namespace orbelcast {

std::optional<Size> DrawnFrames::DrawOnAll(const FrameBytes& jpeg, std::span<const JpegTarget> targets) {
  const auto size = ForwardingJpegDecoder::DrawOnAll(jpeg, targets);
  if (size) Note(jpeg);
  return size;
}

void DrawnFrames::Note(const FrameBytes& jpeg) {
  if (jpeg.Serial() == newest_.Serial()) return;
  newest_ = jpeg;
  ++count_;
  if (on_frame) on_frame();
}

}  // namespace orbelcast
