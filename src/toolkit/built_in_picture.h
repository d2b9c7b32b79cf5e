#pragma once

#include <cstdint>
#include <span>

#include "platform/picture_codec.h"
#include "toolkit/surface.h"

namespace orbelcast {

/// A picture that the program carries with it, decoded when somebody looks: a control that nobody sees needs neither
/// the time nor the memory. `png` is a PNG file; it and `pictures` outlive the surface. Empty for what is no such file.
Surface BuiltInPicture(PictureCodec& pictures, std::span<const std::uint8_t> png);

}  // namespace orbelcast
