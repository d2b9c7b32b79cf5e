#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "platform/surface.h"

namespace orbelcast {

/// Makes `path` a file of exactly these bytes. Where that cannot be done no file is left and the answer is false.
bool WriteFile(const std::string& path, std::span<const std::uint8_t> bytes);

/// The picture as a BMP file's bytes, 24 bits a pixel, rows from the bottom; an empty picture gives none.
std::vector<std::uint8_t> EncodeBitmap(const Surface& picture);

}  // namespace orbelcast
