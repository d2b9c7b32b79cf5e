#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <optional>
#include <span>
#include <vector>

#include "platform/frame_bytes.h"

namespace orbelcast {

/// A colour as the interface counts it: red + 256 × green + 65536 × blue.
using Color = std::int32_t;

/// The colour of a pixel outside a surface.
inline constexpr Color kNoColor = -1;

constexpr Color Rgb(int red, int green, int blue) {
  return red + 256 * green + 65536 * blue;
}
constexpr int RedOf(Color color) {
  return color & 0xff;
}
constexpr int GreenOf(Color color) {
  return (color >> 8) & 0xff;
}
constexpr int BlueOf(Color color) {
  return (color >> 16) & 0xff;
}

/// The opaque pixel of that colour, as a Surface has it.
constexpr std::uint32_t PixelOf(Color color) {
  return 0xff000000u | static_cast<std::uint32_t>(RedOf(color)) << 16 |
         static_cast<std::uint32_t>(GreenOf(color)) << 8 | static_cast<std::uint32_t>(BlueOf(color));
}

/// Pixels in the memory of all surfaces of the process.
inline std::atomic<std::int64_t> pixels_in_use = 0;

/// Memory for pixels, which begin 16 bytes beside a 32-byte boundary.
///
/// Vector code that finds its output aligned tends to write it past the processor's caches. A picture is read again at
/// once (for its thumbnail, and to be painted): decoding 640 × 480 pixels takes a tenth less this way, reading them
/// afterwards half.
template <typename T>
struct PixelAllocator {
  using value_type = T;
  static constexpr std::align_val_t kBoundary{32};
  static constexpr std::size_t kBeside = 16;

  PixelAllocator() = default;
  template <typename U>
  explicit PixelAllocator(const PixelAllocator<U>&) {}

  T* allocate(std::size_t count) {
    void* memory = ::operator new(count * sizeof(T) + kBeside, kBoundary);
    pixels_in_use += static_cast<std::int64_t>(count);
    return reinterpret_cast<T*>(static_cast<std::byte*>(memory) + kBeside);
  }
  void deallocate(T* pixels, std::size_t count) noexcept {
    pixels_in_use -= static_cast<std::int64_t>(count);
    ::operator delete(reinterpret_cast<std::byte*>(pixels) - kBeside, kBoundary);
  }
  friend bool operator==(const PixelAllocator&, const PixelAllocator&) { return true; }
};

class Surface;
struct PixelMemory;

/// A picture that is drawn on a surface when somebody looks at it.
class UnseenPicture {
 public:
  UnseenPicture() = default;
  virtual ~UnseenPicture() = default;
  UnseenPicture(const UnseenPicture&) = delete;
  UnseenPicture& operator=(const UnseenPicture&) = delete;

  /// Draws it. False where it is damaged: the surface is as it was.
  virtual bool DrawOn(Surface& surface) = 0;
  /// Draws it into memory of somebody else's, as it would cover `surface`. False where it is damaged, or covers less.
  virtual bool DrawInto(const PixelMemory& memory, const Surface& surface) = 0;
  /// The file that it came as, where that is a PNG file whose pixels take the place of those below; empty elsewhere.
  virtual std::span<const std::uint8_t> Png() const { return {}; }
};

/// A box of pixels, both corners included.
struct PixelBox {
  int left = 0;
  int top = 0;
  int right = -1;
  int bottom = -1;

  bool Empty() const { return left > right || top > bottom; }
  bool Covers(const PixelBox& other) const {
    return left <= other.left && top <= other.top && right >= other.right && bottom >= other.bottom;
  }
  bool operator==(const PixelBox&) const = default;
};

/// Is told what is drawn on a surface, in order, at the moment of drawing: for a front end that draws it again
/// elsewhere. Whoever looks at the pixels changes nothing, and is not told. Nothing here may draw on the surface.
class DrawingWatcher {
 public:
  DrawingWatcher() = default;
  virtual ~DrawingWatcher() = default;
  DrawingWatcher(const DrawingWatcher&) = delete;
  DrawingWatcher& operator=(const DrawingWatcher&) = delete;

  /// A box, clipped to the surface, got one colour.
  virtual void Filled(const PixelBox& box, Color color) = 0;
  /// A JPEG picture was stretched to a box, which may reach beyond the surface.
  virtual void PictureDrawn(const FrameBytes& jpeg, const PixelBox& box) = 0;
  /// Another surface was drawn on it, with its top-left corner at (x, y).
  virtual void SurfaceDrawn(const Surface& source, int x, int y) = 0;
};

/// A picture in memory: rows from the top, each pixel 32 bits.
///
/// A pixel is the number 0xAARRGGBB in the machine's byte order (on a little-endian machine the bytes B, G, R, A): the
/// format that front ends and image libraries take. Surfaces that are shown are opaque (A = 255); only pictures that
/// are drawn onto others, such as icons, have transparent pixels. Coordinates are pixels. Drawing outside is clipped.
///
/// Pixels are made when somebody looks at them: a surface in one colour has no memory, and of the pictures given to
/// DrawWhenSeen those are drawn that are still to be seen. To look is to ask for pixels, in whatever way; nothing else
/// of the interface shows whether they are there.
///
/// The memory is one block, so a front end may show it without a copy. It is kept while the size stays, unless it is
/// exchanged (Swap; a decoder puts a whole picture there that way) or not needed any more (LookInto). `Block` and
/// `revision` let a front end, or a decoder, notice that the picture it knew is gone or was drawn on.
class Surface {
 public:
  struct Block {
    std::vector<std::uint32_t, PixelAllocator<std::uint32_t>> pixels;
    std::uint64_t revision = 0;  ///< Grows with every drawing.
  };

  /// A side longer than this is refused (the surface becomes empty): 64 megapixels is the largest picture handled.
  static constexpr int kMaxSide = 65535;
  static constexpr std::int64_t kMaxPixels = 64LL * 1024 * 1024;
  /// Drawings that wait for somebody to look, at most: with one more, all are made.
  static constexpr std::size_t kMaxUnseen = 256;

  Surface() = default;
  Surface(int width, int height, Color background = 0) { Resize(width, height, background); }
  /// A copy has pixels of its own. To copy is to look.
  Surface(const Surface& other);
  Surface(Surface&& other) noexcept { Swap(other); }
  Surface& operator=(Surface other) noexcept;
  ~Surface() = default;

  int Width() const { return width_; }
  int Height() const { return height_; }
  bool Empty() const { return width_ == 0 || height_ == 0; }

  /// Makes the surface `width` × `height`; what was drawn stays at the top-left corner, new pixels get `background`.
  /// A size that is not positive, or is too large, makes it empty.
  void Resize(int width, int height, Color background);

  /// Fills the box between two corners, both included.
  void FillBox(int x1, int y1, int x2, int y2, Color color);
  /// Draws the one-pixel outline of the box between two corners, both included.
  void OutlineBox(int x1, int y1, int x2, int y2, Color color);
  void Fill(Color color);

  /// The colour at (x, y), or kNoColor outside.
  Color Point(int x, int y) const {
    if (x < 0 || y < 0 || x >= width_ || y >= height_) return kNoColor;
    if (!block_ || unseen_) Look();
    const std::uint32_t pixel =
        block_->pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) + static_cast<std::size_t>(x)];
    return Rgb(static_cast<int>((pixel >> 16) & 0xff), static_cast<int>((pixel >> 8) & 0xff),
               static_cast<int>(pixel & 0xff));
  }

  /// The colour of all pixels of a surface that has no memory yet, and no picture to be seen.
  std::optional<Color> Plain() const { return block_ || unseen_ ? std::nullopt : std::optional(plain_); }

  /// Draws another surface with its top-left corner at (x, y), its transparent pixels blended.
  void Draw(const Surface& source, int x, int y);

  /// Exchanges two surfaces without copying a pixel. Counts as drawing on both.
  void Swap(Surface& other) noexcept;

  /// The pixels, row by row without gaps; empty for an empty surface. The mutable ones count as drawn on.
  std::span<const std::uint32_t> Pixels() const;
  std::span<std::uint32_t> MutablePixels() {
    if (Empty()) return {};
    if (unseen_) Settle();
    Block& block = Memorized();
    ++block.revision;
    newest_was_damaged_ = false;
    return block.pixels;
  }

  /// The memory, shared so that its end can be noticed. Null for a surface that has none yet.
  const std::shared_ptr<Block>& Memory() const { return block_; }
  std::uint64_t Revision() const { return block_ ? block_->revision : 0; }

  /// From now on `watcher` is told what is drawn, by the operations above and by decoders of frames, for as long as it
  /// lives. It stays with this object, whatever it is exchanged with. One at a time.
  void Watch(const std::shared_ptr<DrawingWatcher>& watcher) { watcher_ = watcher; }
  /// To be called by who drew a JPEG picture on it, or gave it to DrawWhenSeen.
  void TellPicture(const FrameBytes& jpeg, int x, int y, int width, int height) const;

  // ---- Pictures that nobody has seen yet ---------------------------------------------------------------------------

  /// Draws `picture` in the box at (x, y) when somebody looks, unless later drawings have covered it by then. Where it
  /// turns out to be damaged, what it covers is seen: the picture before it is kept for that, but none before these
  /// two.
  void DrawWhenSeen(std::shared_ptr<UnseenPicture> picture, int x, int y, int width, int height);
  /// Draws what nobody has seen yet. Unlike a look it does not make the surface one that is watched.
  void Settle() const;
  /// To look without making pixels: where all that is to be seen is a picture that nobody has seen, draws it into
  /// `memory`, which has the surface's size, or its first rows. False elsewhere; the memory then has anything in it.
  bool LookInto(const PixelMemory& memory) const;
  /// To show it elsewhere without making pixels: the PNG file whose picture is all that is to be seen, where nobody has
  /// seen it yet; empty elsewhere.
  std::span<const std::uint8_t> UnseenPng() const;
  /// Whether the last drawing was a picture given to DrawWhenSeen, and found to be damaged by whoever looked.
  bool NewestWasDamaged() const { return newest_was_damaged_; }

  /// The drawings that nobody has seen yet, from the oldest; gone when somebody looks.
  struct Unseen;
  std::weak_ptr<Unseen> WhatIsUnseen() const { return unseen_; }
  /// Takes these off, where `picture` covers them all and the surface is watched: somebody saw the picture before. For
  /// who makes the picture anyway and draws it here too. Null elsewhere.
  std::shared_ptr<Unseen> TakeUnseen(const UnseenPicture& picture);
  /// Puts back what TakeUnseen gave.
  void GiveBack(std::shared_ptr<Unseen> unseen);

 private:
  using Box = PixelBox;
  /// A picture, or where there is none a box in one colour.
  struct Drawing {
    Box box;
    std::shared_ptr<UnseenPicture> picture;
    Color color = 0;
    int pictures_above = 0;  ///< Later pictures that cover it.
  };

  Box Whole() const { return {0, 0, width_ - 1, height_ - 1}; }
  Box Clipped(const Box& box) const;
  void Look() const;
  /// The memory, made where there is none yet.
  Block& Memorized() const {
    if (!block_) MakeBlock();
    return *block_;
  }
  void MakeBlock() const;
  void FillPixels(const Box& box, Color color);
  void DrawLater(Drawing drawing);
  void DrawNow(std::span<const Drawing> drawings);
  bool DrawNow(const Drawing& drawing);

  int width_ = 0;
  int height_ = 0;
  Color plain_ = 0;       ///< The colour of all pixels while there is no memory.
  bool watched_ = false;  ///< Somebody looked between the last two whole pictures.
  bool newest_was_damaged_ = false;
  std::weak_ptr<DrawingWatcher> watcher_;
  // Made when somebody looks, which changes nothing that can be seen.
  mutable std::shared_ptr<Block> block_;
  mutable std::shared_ptr<Unseen> unseen_;
  mutable bool looked_at_ = false;  ///< Since the last whole picture was drawn.
};

struct Surface::Unseen {
  Surface* surface;
  std::vector<Drawing> drawings;
};

}  // namespace orbelcast
