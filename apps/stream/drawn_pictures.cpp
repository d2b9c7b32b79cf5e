#include "stream/drawn_pictures.h"

namespace orbelcast {

std::optional<Size> DrawnPictures::DrawOnAll(const FrameBytes& jpeg, std::span<const JpegTarget> targets) {
  const auto size = ForwardingJpegDecoder::DrawOnAll(jpeg, targets);
  if (!size) return size;
  for (const JpegTarget& target : targets) corners_.emplace(target.x, target.y);
  if (jpeg.Serial() == newest_.Serial()) return size;
  newest_ = jpeg;
  ++count_;
  if (on_picture) on_picture();
  return size;
}

}  // namespace orbelcast
