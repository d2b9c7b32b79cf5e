#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace orbelcast {

class Surface;

/// Pictures that are not frames: the ones the controls carry with them, and screenshots. PNG.
class PictureCodec {
 public:
  virtual ~PictureCodec() = default;
  /// The picture, transparency included; an empty surface where the bytes cannot be read.
  virtual Surface Decode(std::span<const std::uint8_t> bytes) = 0;
  /// The picture as a file's bytes; empty for an empty surface.
  virtual std::vector<std::uint8_t> Encode(const Surface& surface) = 0;
};

}  // namespace orbelcast
