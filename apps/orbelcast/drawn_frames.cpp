#include "orbelcast/drawn_frames.h"

namespace orbelcast {

bool DrawnFrames::DrawJpeg(Surface& target, const FrameBytes& jpeg, int width, int height) {
  const bool drawn = ForwardingJpegDecoder::DrawJpeg(target, jpeg, width, height);
  if (drawn) Note(jpeg);
  return drawn;
}

bool DrawnFrames::DrawJpegAt(Surface& target, const FrameBytes& jpeg, int x, int y, int width, int height) {
  const bool drawn = ForwardingJpegDecoder::DrawJpegAt(target, jpeg, x, y, width, height);
  if (drawn) Note(jpeg);
  return drawn;
}

void DrawnFrames::Note(const FrameBytes& jpeg) {
  if (jpeg.Serial() == newest_.Serial()) return;
  newest_ = jpeg;
  ++count_;
  if (on_frame) on_frame();
}

}  // namespace orbelcast
