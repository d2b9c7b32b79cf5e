#pragma once

#include <functional>
#include <optional>
#include <set>
#include <span>
#include <utility>

#include "platform/jpeg_decoder.h"

namespace orbelcast {

/// Notes the pictures that were drawn. One counts once, however many surfaces it is drawn on.
///
/// The first one counts only if it could be decoded, and so does every other where `decodes_all`. Elsewhere they are
/// decoded when somebody looks, and one counts that has a header and an end.
class DrawnPictures final : public ForwardingJpegDecoder {
 public:
  using ForwardingJpegDecoder::ForwardingJpegDecoder;

  /// Called in the middle of drawing, after each new picture: short work that neither yields nor ends the control.
  std::function<void()> on_picture;

  bool decodes_all = false;

  int Count() const { return count_; }
  /// The newest picture that was drawn, as received; empty before the first.
  const FrameBytes& Newest() const { return newest_; }
  /// Whether one was drawn with its top-left corner there, in pixels.
  bool At(int x, int y) const { return corners_.contains({x, y}); }

  std::optional<Size> DrawOnAll(const FrameBytes& jpeg, std::span<const JpegTarget> targets, Size serves) override;
  std::optional<Size> DrawWhenSeen(const FrameBytes& jpeg, std::span<const JpegTarget> targets) override;

 private:
  void Note(const FrameBytes& jpeg, std::span<const JpegTarget> targets);

  FrameBytes newest_;
  int count_ = 0;
  std::set<std::pair<int, int>> corners_;
};

}  // namespace orbelcast
