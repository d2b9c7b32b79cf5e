#include "toolkit/surface.h"

#include <algorithm>
#include <utility>

namespace orbelcast {

namespace {

constexpr std::uint32_t PixelOf(Color color) {
  return 0xff000000u | static_cast<std::uint32_t>(RedOf(color)) << 16 |
         static_cast<std::uint32_t>(GreenOf(color)) << 8 | static_cast<std::uint32_t>(BlueOf(color));
}

constexpr std::uint32_t Blend(std::uint32_t over, std::uint32_t under) {
  const std::uint32_t alpha = over >> 24;
  if (alpha == 255) return over;
  if (alpha == 0) return under;
  const auto mix = [&](int shift) {
    const std::uint32_t a = (over >> shift) & 0xff;
    const std::uint32_t b = (under >> shift) & 0xff;
    return (a * alpha + b * (255 - alpha) + 127) / 255 << shift;
  };
  return 0xff000000u | mix(16) | mix(8) | mix(0);
}

}  // namespace

Surface::Surface(const Surface& other)
    : width_(other.width_),
      height_(other.height_),
      block_(other.block_ ? std::make_shared<Block>(*other.block_) : nullptr) {}

Surface::Surface(Surface&& other) noexcept
    : width_(std::exchange(other.width_, 0)),
      height_(std::exchange(other.height_, 0)),
      block_(std::move(other.block_)) {}

Surface& Surface::operator=(Surface other) noexcept {
  width_ = std::exchange(other.width_, 0);
  height_ = std::exchange(other.height_, 0);
  block_ = std::move(other.block_);
  return *this;
}

void Surface::Resize(int width, int height, Color background) {
  if (width <= 0 || height <= 0 || width > kMaxSide || height > kMaxSide ||
      static_cast<std::int64_t>(width) * height > kMaxPixels) {
    width = height = 0;
  }
  if (width == width_ && height == height_) return;

  auto block = std::make_shared<Block>();
  block->revision = Revision() + 1;
  block->pixels.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), PixelOf(background));
  const int kept_width = std::min(width, width_);
  const int kept_height = std::min(height, height_);
  for (int y = 0; y < kept_height; ++y) {
    std::copy_n(block_->pixels.begin() + static_cast<std::ptrdiff_t>(y) * width_, kept_width,
                block->pixels.begin() + static_cast<std::ptrdiff_t>(y) * width);
  }
  block_ = std::move(block);
  width_ = width;
  height_ = height;
}

void Surface::FillBox(int x1, int y1, int x2, int y2, Color color) {
  const int left = std::max(std::min(x1, x2), 0);
  const int top = std::max(std::min(y1, y2), 0);
  const int right = std::min(std::max(x1, x2), width_ - 1);
  const int bottom = std::min(std::max(y1, y2), height_ - 1);
  if (left > right || top > bottom) return;
  const std::uint32_t pixel = PixelOf(color);
  for (int y = top; y <= bottom; ++y) {
    std::fill_n(block_->pixels.begin() + static_cast<std::ptrdiff_t>(y) * width_ + left, right - left + 1, pixel);
  }
  ++block_->revision;
}

void Surface::OutlineBox(int x1, int y1, int x2, int y2, Color color) {
  FillBox(x1, y1, x2, y1, color);
  FillBox(x1, y2, x2, y2, color);
  FillBox(x1, y1, x1, y2, color);
  FillBox(x2, y1, x2, y2, color);
}

void Surface::Fill(Color color) {
  FillBox(0, 0, width_ - 1, height_ - 1, color);
}

void Surface::Draw(const Surface& source, int x, int y) {
  const int left = std::max(x, 0);
  const int top = std::max(y, 0);
  const int right = static_cast<int>(std::min<std::int64_t>(static_cast<std::int64_t>(x) + source.width_, width_));
  const int bottom = static_cast<int>(std::min<std::int64_t>(static_cast<std::int64_t>(y) + source.height_, height_));
  if (left >= right || top >= bottom) return;
  for (int row = top; row < bottom; ++row) {
    const auto* from = source.block_->pixels.data() + static_cast<std::ptrdiff_t>(row - y) * source.width_ + (left - x);
    auto* to = block_->pixels.data() + static_cast<std::ptrdiff_t>(row) * width_ + left;
    std::transform(from, from + (right - left), to, to, Blend);
  }
  ++block_->revision;
}

void Surface::Swap(Surface& other) noexcept {
  std::swap(width_, other.width_);
  std::swap(height_, other.height_);
  std::swap(block_, other.block_);
  if (block_) ++block_->revision;
  if (other.block_) ++other.block_->revision;
}

std::span<const std::uint32_t> Surface::Pixels() const {
  return block_ ? std::span<const std::uint32_t>(block_->pixels) : std::span<const std::uint32_t>();
}

std::span<std::uint32_t> Surface::MutablePixels() {
  if (!block_) return {};
  ++block_->revision;
  return block_->pixels;
}

}  // namespace orbelcast
