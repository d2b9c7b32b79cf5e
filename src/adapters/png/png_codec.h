#pragma once

#include "platform/picture_codec.h"
#include "toolkit/surface.h"

namespace orbelcast {

class PngCodec final : public PictureCodec {
 public:
  Surface Decode(std::span<const std::uint8_t> bytes) override;
  std::vector<std::uint8_t> Encode(const Surface& surface) override;
};

}  // namespace orbelcast
