#pragma once

#include <memory>

#include "platform/jpeg_decoder.h"

namespace orbelcast {

/// Whether a decoder leaves that target out, for its width or height.
bool IsLeftOut(const JpegTarget& target);

/// Passes pictures on to a decoder when somebody looks at the surfaces that they are drawn on. A picture that is
/// covered before costs the reading of its header.
///
/// The targets of a picture share one decoding: the first look draws it on that target, and on those that are watched,
/// where somebody saw the picture before. Its scale is the one that serves them all, so that every target gets the
/// pixels that it would have got at once.
class PicturesOnDemand final : public ForwardingJpegDecoder {
 public:
  /// `decoder` lives as long as any picture that nobody has seen.
  explicit PicturesOnDemand(std::shared_ptr<JpegDecoder> decoder)
      : ForwardingJpegDecoder(*decoder), decoder_(std::move(decoder)) {}

  std::optional<Size> DrawWhenSeen(const FrameBytes& jpeg, std::span<const JpegTarget> targets) override;

 private:
  std::optional<Size> DrawAtOnce(const FrameBytes& jpeg, std::span<const JpegTarget> targets);

  const std::shared_ptr<JpegDecoder> decoder_;
};

}  // namespace orbelcast
