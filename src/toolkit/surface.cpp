#include "toolkit/surface.h"

#include <algorithm>
#include <utility>

#include "platform/jpeg_decoder.h"

namespace orbelcast {

namespace {

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

Surface::Surface(const Surface& other) : width_(other.width_), height_(other.height_), plain_(other.plain_) {
  if (other.unseen_) other.Look();
  if (other.block_) block_ = std::make_shared<Block>(*other.block_);
}

Surface& Surface::operator=(Surface other) noexcept {
  Swap(other);
  return *this;
}

void Surface::Swap(Surface& other) noexcept {
  std::swap(width_, other.width_);
  std::swap(height_, other.height_);
  std::swap(plain_, other.plain_);
  std::swap(block_, other.block_);
  std::swap(unseen_, other.unseen_);
  std::swap(newest_was_damaged_, other.newest_was_damaged_);
  for (Surface* surface : {this, &other}) {
    if (surface->block_) ++surface->block_->revision;
    if (surface->unseen_) surface->unseen_->surface = surface;
  }
}

void Surface::Resize(int width, int height, Color background) {
  if (width <= 0 || height <= 0 || width > kMaxSide || height > kMaxSide ||
      static_cast<std::int64_t>(width) * height > kMaxPixels) {
    width = height = 0;
  }
  if (width == width_ && height == height_) return;

  Settle();
  const int kept_width = std::min(width, width_);
  const int kept_height = std::min(height, height_);
  const bool plain = !block_ && (kept_width == 0 || kept_height == 0 || plain_ == background);
  if (plain) {
    plain_ = background;
  } else {
    auto block = std::make_shared<Block>();
    block->revision = Revision() + 1;
    block->pixels.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), PixelOf(background));
    const auto& old = Memorized().pixels;
    for (int y = 0; y < kept_height; ++y) {
      std::copy_n(old.begin() + static_cast<std::ptrdiff_t>(y) * width_, kept_width,
                  block->pixels.begin() + static_cast<std::ptrdiff_t>(y) * width);
    }
    block_ = std::move(block);
  }
  width_ = width;
  height_ = height;
}

void Surface::FillBox(int x1, int y1, int x2, int y2, Color color) {
  const Box box = Clipped({std::min(x1, x2), std::min(y1, y2), std::max(x1, x2), std::max(y1, y2)});
  if (box.Empty()) return;
  newest_was_damaged_ = false;
  if (const auto watcher = watcher_.lock()) watcher->Filled(box, color);
  const bool whole = box.Covers(Whole());
  if (whole) unseen_.reset();
  if (unseen_) {
    DrawLater({.box = box, .picture = nullptr, .color = color});
  } else if (whole && !block_) {
    plain_ = color;
  } else {
    FillPixels(box, color);
  }
}

void Surface::FillPixels(const Box& box, Color color) {
  Block& block = Memorized();
  const std::uint32_t pixel = PixelOf(color);
  for (int y = box.top; y <= box.bottom; ++y) {
    std::fill_n(block.pixels.begin() + static_cast<std::ptrdiff_t>(y) * width_ + box.left, box.right - box.left + 1,
                pixel);
  }
  ++block.revision;
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
  if (const auto watcher = watcher_.lock()) watcher->SurfaceDrawn(source, x, y);
  const auto from_all = source.Pixels();
  const auto to_all = MutablePixels();
  for (int row = top; row < bottom; ++row) {
    const auto* from = from_all.data() + static_cast<std::ptrdiff_t>(row - y) * source.width_ + (left - x);
    auto* to = to_all.data() + static_cast<std::ptrdiff_t>(row) * width_ + left;
    std::transform(from, from + (right - left), to, to, Blend);
  }
}

std::span<const std::uint32_t> Surface::Pixels() const {
  if (Empty()) return {};
  Look();
  return block_->pixels;
}

Surface::Box Surface::Clipped(const Box& box) const {
  return {std::max(box.left, 0), std::max(box.top, 0), std::min(box.right, width_ - 1),
          std::min(box.bottom, height_ - 1)};
}

void Surface::MakeBlock() const {
  block_ = std::make_shared<Block>();
  block_->pixels.assign(static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_), PixelOf(plain_));
}

void Surface::TellPicture(const FrameBytes& jpeg, int x, int y, int width, int height) const {
  if (const auto watcher = watcher_.lock()) watcher->PictureDrawn(jpeg, {x, y, x + width - 1, y + height - 1});
}

// ---- Pictures that nobody has seen yet -----------------------------------------------------------------------------

void Surface::DrawWhenSeen(std::shared_ptr<UnseenPicture> picture, int x, int y, int width, int height) {
  const auto end = [](int start, int size) {
    return static_cast<int>(std::min<std::int64_t>(std::int64_t{start} + size, kMaxSide)) - 1;
  };
  const Box box = Clipped({x, y, end(x, width), end(y, height)});
  if (box.Empty()) return;
  newest_was_damaged_ = false;
  if (box.Covers(Whole())) watched_ = std::exchange(looked_at_, false);
  DrawLater({.box = box, .picture = std::move(picture)});
}

void Surface::DrawLater(Drawing drawing) {
  if (unseen_ && unseen_->drawings.size() == kMaxUnseen) Settle();
  if (!unseen_) unseen_ = std::make_shared<Unseen>(Unseen{this, {}});
  auto& drawings = unseen_->drawings;
  // A picture may turn out to be damaged, so that it takes two of them to cover something for good.
  std::erase_if(drawings, [&](Drawing& earlier) {
    if (!drawing.box.Covers(earlier.box)) return false;
    return !drawing.picture || ++earlier.pictures_above == 2;
  });
  drawings.push_back(std::move(drawing));
}

void Surface::Settle() const {
  if (const auto unseen = std::exchange(unseen_, nullptr)) unseen->surface->DrawNow(unseen->drawings);
}

void Surface::Look() const {
  looked_at_ = true;
  Settle();
  Memorized();
}

bool Surface::LookInto(const PixelMemory& memory) const {
  looked_at_ = true;
  if (!unseen_ || memory.width != width_ || memory.height != height_) return false;
  auto& drawings = unseen_->drawings;
  const Drawing& newest = drawings.back();
  if (!newest.picture || !newest.box.Covers(Whole()) || !newest.picture->DrawInto(memory, *this)) return false;
  // It is good, and what it covers will not be seen.
  drawings.erase(drawings.begin(), drawings.end() - 1);
  block_.reset();
  return true;
}

std::span<const std::uint8_t> Surface::UnseenPng() const {
  if (!unseen_) return {};
  const Drawing& newest = unseen_->drawings.back();
  if (!newest.picture || !newest.box.Covers(Whole())) return {};
  return newest.picture->Png();
}

// Drawings below the newest one that covers everything are not made, unless that one is damaged.
void Surface::DrawNow(std::span<const Drawing> drawings) {
  const auto is_whole = [this](const Drawing& drawing) { return drawing.box.Covers(Whole()); };
  bool newest_was_damaged = false;
  const auto draw = [&](const Drawing& drawing) {
    const bool drawn = DrawNow(drawing);
    if (&drawing == &drawings.back()) newest_was_damaged = !drawn;
    return drawn;
  };
  std::size_t first = drawings.size();
  while (first > 0 && !(is_whole(drawings[first - 1]) && draw(drawings[first - 1]))) --first;
  for (const Drawing& drawing : drawings.subspan(first)) {
    if (!is_whole(drawing)) draw(drawing);
  }
  newest_was_damaged_ = newest_was_damaged;
}

bool Surface::DrawNow(const Drawing& drawing) {
  if (drawing.picture) return drawing.picture->DrawOn(*this);
  FillPixels(drawing.box, drawing.color);
  return true;
}

std::shared_ptr<Surface::Unseen> Surface::TakeUnseen(const UnseenPicture& picture) {
  if (!watched_ || !unseen_) return nullptr;
  const Drawing& newest = unseen_->drawings.back();
  if (newest.picture.get() != &picture || !newest.box.Covers(Whole())) return nullptr;
  return std::exchange(unseen_, nullptr);
}

void Surface::GiveBack(std::shared_ptr<Unseen> unseen) {
  unseen_ = std::move(unseen);
}

}  // namespace orbelcast
