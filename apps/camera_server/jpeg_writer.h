#pragma once

#include <cstdint>
#include <string>

namespace orbelcast::camera_server {

/// Encodes a picture of 32-bit pixels (blue, green, red, unused; rows of `stride` bytes, top first) as a baseline JPEG
/// with 4:2:0 colour. Quality is 1 to 100. Throws std::runtime_error with the encoder's message.
std::string EncodeJpeg(const std::uint8_t* pixels, int width, int height, int stride, int quality);

}  // namespace orbelcast::camera_server
