#pragma once

#include <cstdint>
#include <memory>

#include "platform/jpeg_decoder.h"

/// Pictures decoded by libjpeg-turbo and scaled by libyuv.
namespace orbelcast {

/// The decoder. One frame's entropy-coded data is decoded once: what was decoded last is kept, either in a surface of the
/// decoder's own or, where the sizes agreed, in the surface that it was drawn on (known by its memory and revision), and
/// serves every further drawing of the same frame that is not larger.
class TurboJpegDecoder final : public JpegDecoder {
 public:
  TurboJpegDecoder();
  ~TurboJpegDecoder() override;
  TurboJpegDecoder(const TurboJpegDecoder&) = delete;
  TurboJpegDecoder& operator=(const TurboJpegDecoder&) = delete;

  bool DrawJpeg(Surface& target, const FrameBytes& jpeg, int width, int height) override;
  bool DrawJpegAt(Surface& target, const FrameBytes& jpeg, int x, int y, int width, int height) override;
  int JpegWidth() const override { return native_width_; }
  int JpegHeight() const override { return native_height_; }

  /// How often entropy-coded data was decoded; for tests and benchmarks.
  std::uint64_t Decodes() const { return decodes_; }

 private:
  struct Codec;
  struct Rectangle {
    int x;
    int y;
    int width;
    int height;
  };

  bool Decode(Surface& target, const FrameBytes& jpeg, const Rectangle& place);
  bool DrawDecoded(Surface& target, const Rectangle& place) const;
  /// The picture decoded last, where it is still there and large enough for the place; null otherwise.
  std::shared_ptr<const Surface::Block> Decoded(const FrameBytes& jpeg, const Rectangle& place) const;
  void Remember(const Surface& surface, const FrameBytes& jpeg);

  std::unique_ptr<Codec> codec_;
  Surface scratch_;  ///< The picture at a decoding scale, where that is not the target's size.
  Surface spare_;    ///< Where a picture of the target's size grows, to be exchanged with the target's when complete.

  std::uint64_t decoded_serial_ = 0;
  std::weak_ptr<const Surface::Block> decoded_block_;
  std::uint64_t decoded_revision_ = 0;
  int decoded_width_ = 0;
  int decoded_height_ = 0;

  int native_width_ = 0;
  int native_height_ = 0;
  std::uint64_t decodes_ = 0;
};

}  // namespace orbelcast
