#include "stream/drawn_pictures.h"

namespace orbelcast {

bool DrawnPictures::DrawJpeg(Surface& target, const FrameBytes& jpeg, int width, int height) {
  const bool drawn = ForwardingJpegDecoder::DrawJpeg(target, jpeg, width, height);
  if (drawn) Note(jpeg);
  return drawn;
}

bool DrawnPictures::DrawJpegAt(Surface& target, const FrameBytes& jpeg, int x, int y, int width, int height) {
  const bool drawn = ForwardingJpegDecoder::DrawJpegAt(target, jpeg, x, y, width, height);
  if (!drawn) return false;
  corners_.emplace(x, y);
  Note(jpeg);
  return true;
}

void DrawnPictures::Note(const FrameBytes& jpeg) {
  if (jpeg.Serial() == newest_.Serial()) return;
  newest_ = jpeg;
  ++count_;
  if (on_picture) on_picture();
}

}  // namespace orbelcast
