#include "recording/picture_file.h"

namespace orbelcast {

namespace {

constexpr std::uint32_t kHeaderBytes = 54;
/// 96 dots an inch.
constexpr std::uint32_t kPixelsPerMeter = 3780;

void Append16(std::vector<std::uint8_t>& bytes, std::uint32_t value) {
  bytes.push_back(static_cast<std::uint8_t>(value));
  bytes.push_back(static_cast<std::uint8_t>(value >> 8));
}

void Append32(std::vector<std::uint8_t>& bytes, std::uint32_t value) {
  Append16(bytes, value);
  Append16(bytes, value >> 16);
}

}  // namespace

std::vector<std::uint8_t> EncodeBitmap(const Surface& picture) {
  if (picture.Empty()) return {};
  const auto width = static_cast<std::uint32_t>(picture.Width());
  const auto height = static_cast<std::uint32_t>(picture.Height());
  const std::uint32_t row_bytes = (width * 3 + 3) / 4 * 4;
  const std::uint32_t image_bytes = row_bytes * height;

  std::vector<std::uint8_t> file{'B', 'M'};
  file.reserve(kHeaderBytes + image_bytes);
  Append32(file, kHeaderBytes + image_bytes);
  Append32(file, 0);
  Append32(file, kHeaderBytes);
  Append32(file, 40);
  Append32(file, width);
  Append32(file, height);
  Append16(file, 1);
  Append16(file, 24);
  Append32(file, 0);
  Append32(file, image_bytes);
  Append32(file, kPixelsPerMeter);
  Append32(file, kPixelsPerMeter);
  Append32(file, 0);
  Append32(file, 0);
  for (std::uint32_t row = height; row-- > 0;) {
    for (const std::uint32_t pixel : picture.Pixels().subspan(std::size_t{row} * width, width)) {
      file.push_back(static_cast<std::uint8_t>(pixel));
      file.push_back(static_cast<std::uint8_t>(pixel >> 8));
      file.push_back(static_cast<std::uint8_t>(pixel >> 16));
    }
    file.resize(file.size() + row_bytes - width * 3);
  }
  return file;
}

}  // namespace orbelcast
