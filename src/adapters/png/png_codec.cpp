#include "adapters/png/png_codec.h"

#include <png.h>

namespace orbelcast {

namespace {

/// libpng's picture in memory; freed whatever happens.
struct PngImage : png_image {
  PngImage() : png_image{} { version = PNG_IMAGE_VERSION; }
  ~PngImage() { png_image_free(this); }
  PngImage(const PngImage&) = delete;
  PngImage& operator=(const PngImage&) = delete;
};

}  // namespace

Surface PngCodec::Decode(std::span<const std::uint8_t> bytes) {
  PngImage image;
  if (png_image_begin_read_from_memory(&image, bytes.data(), bytes.size()) == 0) return {};
  image.format = PNG_FORMAT_BGRA;
  if (image.width > static_cast<png_uint_32>(Surface::kMaxSide) ||
      image.height > static_cast<png_uint_32>(Surface::kMaxSide)) {
    return {};
  }
  Surface surface(static_cast<int>(image.width), static_cast<int>(image.height));
  if (surface.Empty()) return {};
  if (png_image_finish_read(&image, nullptr, surface.MutablePixels().data(), 0, nullptr) == 0) return {};
  return surface;
}

std::vector<std::uint8_t> PngCodec::Encode(const Surface& surface) {
  if (surface.Empty()) return {};
  PngImage image;
  image.width = static_cast<png_uint_32>(surface.Width());
  image.height = static_cast<png_uint_32>(surface.Height());
  image.format = PNG_FORMAT_BGRA;
  png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(image);
  std::vector<std::uint8_t> bytes(size);
  if (png_image_write_to_memory(&image, bytes.data(), &size, 0, surface.Pixels().data(), 0, nullptr) == 0) return {};
  bytes.resize(size);
  return bytes;
}

}  // namespace orbelcast
