#include "toolkit/built_in_picture.h"

#include <cstddef>
#include <memory>

namespace orbelcast {

namespace {

// The places of the sizes in a PNG file, in four bytes each, the highest first.
constexpr std::size_t kWidthAt = 16;
constexpr std::size_t kHeightAt = 20;
constexpr std::size_t kHeaderBytes = 24;

int NumberAt(std::span<const std::uint8_t> png, std::size_t at) {
  std::uint32_t number = 0;
  for (const std::uint8_t byte : png.subspan(at, 4)) number = number << 8 | byte;
  return static_cast<int>(number);
}

class UnseenPng final : public UnseenPicture {
 public:
  UnseenPng(PictureCodec& pictures, std::span<const std::uint8_t> png) : pictures_(pictures), png_(png) {}

  // Exchanged, not drawn: what is transparent stays so.
  bool DrawOn(Surface& surface) override {
    Surface picture = pictures_.Decode(png_);
    if (picture.Width() != surface.Width() || picture.Height() != surface.Height()) return false;
    surface.Swap(picture);
    return true;
  }
  bool DrawInto(const PixelMemory& /*memory*/, const Surface& /*surface*/) override { return false; }
  std::span<const std::uint8_t> Png() const override { return png_; }

 private:
  PictureCodec& pictures_;
  const std::span<const std::uint8_t> png_;
};

}  // namespace

Surface BuiltInPicture(PictureCodec& pictures, std::span<const std::uint8_t> png) {
  if (png.size() < kHeaderBytes) return {};
  Surface surface(NumberAt(png, kWidthAt), NumberAt(png, kHeightAt));
  surface.DrawWhenSeen(std::make_shared<UnseenPng>(pictures, png), 0, 0, surface.Width(), surface.Height());
  return surface;
}

}  // namespace orbelcast
