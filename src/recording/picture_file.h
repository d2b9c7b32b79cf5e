#pragma once

#include <cstdint>
#include <variant>
#include <vector>

#include "platform/frame_bytes.h"
#include "toolkit/surface.h"

namespace orbelcast {

/// The picture that a viewer shows, as its host gets it: a stream's newest frame as it was received, or what is drawn
/// on the screen (a mosaic, the test card). The surface is its owner's and lasts until something is drawn on it.
using ShownPicture = std::variant<FrameBytes, const Surface*>;

/// The picture as a BMP file's bytes, 24 bits a pixel, rows from the bottom; an empty picture gives none.
std::vector<std::uint8_t> EncodeBitmap(const Surface& picture);

}  // namespace orbelcast
