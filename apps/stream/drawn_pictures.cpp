#include "stream/drawn_pictures.h"

namespace orbelcast {

std::optional<Size> DrawnPictures::DrawOnAll(const FrameBytes& jpeg, std::span<const JpegTarget> targets, Size serves) {
  const auto size = ForwardingJpegDecoder::DrawOnAll(jpeg, targets, serves);
  if (size) Note(jpeg, targets);
  return size;
}

std::optional<Size> DrawnPictures::DrawWhenSeen(const FrameBytes& jpeg, std::span<const JpegTarget> targets) {
  if (decodes_all || count_ == 0) return DrawOnAll(jpeg, targets, {});
  const auto size = ForwardingJpegDecoder::DrawWhenSeen(jpeg, targets);
  if (size) Note(jpeg, targets);
  return size;
}

void DrawnPictures::Note(const FrameBytes& jpeg, std::span<const JpegTarget> targets) {
  for (const JpegTarget& target : targets) corners_.emplace(target.x, target.y);
  if (jpeg.Serial() == newest_.Serial()) return;
  newest_ = jpeg;
  ++count_;
  if (on_picture) on_picture();
}

}  // namespace orbelcast
