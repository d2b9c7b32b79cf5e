#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "platform/frame_bytes.h"
#include "platform/size.h"

namespace orbelcast {

class Surface;

/// Memory of somebody else's for pixels as a Surface has them: the first one, and how many pixels apart two rows begin.
/// Of the `height` rows only the first `rows` are there; others are drawn nowhere.
struct PixelMemory {
  std::uint32_t* first = nullptr;
  int width = 0;
  int height = 0;
  int rows = 0;
  std::ptrdiff_t stride = 0;
};

/// A place to draw a picture: stretched to `width` × `height` pixels with its top-left corner at (x, y), clipped to the
/// surface. A width or height of 0 is the picture's own.
struct JpegTarget {
  Surface& surface;
  int width = 0;
  int height = 0;
  int x = 0;
  int y = 0;
};

/// Draws JPEG pictures onto surfaces.
///
/// The entropy-coded data of one frame (one `FrameBytes::Serial`) is decoded once, at the smallest scale that serves
/// all targets of a call; a later call draws from what an earlier one decoded, while that is there and large enough.
class JpegDecoder {
 public:
  virtual ~JpegDecoder() = default;

  /// Draws the picture on every target, in their order; each is on a surface of its own. Returns the picture's own
  /// size.
  ///
  /// Nothing is drawn and nothing returned for a picture that ends early, cannot be read or has more than
  /// Surface::kMaxPixels, nor for a large one while the process has many pixels already: every surface keeps what it
  /// had. A target whose width or height is negative or above Surface::kMaxSide is left out; without any other nothing
  /// is returned.
  ///
  /// The scale also serves a target of the size `serves`, which is drawn another time.
  virtual std::optional<Size> DrawOnAll(const FrameBytes& jpeg, std::span<const JpegTarget> targets,
                                        Size serves = {}) = 0;

  /// The same with one target.
  std::optional<Size> DrawOn(const JpegTarget& target, const FrameBytes& jpeg) { return DrawOnAll(jpeg, {&target, 1}); }

  /// Draws the picture over all of `memory`, at a scale that also serves a target of the size `serves`. False where it
  /// cannot be drawn; the memory then has anything in it.
  virtual bool DrawInto(const PixelMemory& memory, const FrameBytes& jpeg, Size serves) = 0;

  /// The same as DrawOnAll when somebody looks at a target's surface; what that one had stays until then. Returns
  /// nothing where the header cannot be read or the picture has no end; one that turns out to be damaged later is not
  /// drawn.
  virtual std::optional<Size> DrawWhenSeen(const FrameBytes& jpeg, std::span<const JpegTarget> targets) {
    return DrawOnAll(jpeg, targets);
  }

  /// The picture's own size from its header, without decoding it; nothing where the header cannot be read or promises
  /// more than Surface::kMaxPixels. The picture may turn out to be damaged all the same.
  virtual std::optional<Size> SizeOf(const FrameBytes& jpeg) = 0;
};

/// Passes everything on to another decoder, which outlives it; a derived class changes a step or two.
class ForwardingJpegDecoder : public JpegDecoder {
 public:
  explicit ForwardingJpegDecoder(JpegDecoder& decoder) : decoder_(decoder) {}

  std::optional<Size> DrawOnAll(const FrameBytes& jpeg, std::span<const JpegTarget> targets,
                                Size serves = {}) override {
    return decoder_.DrawOnAll(jpeg, targets, serves);
  }
  bool DrawInto(const PixelMemory& memory, const FrameBytes& jpeg, Size serves) override {
    return decoder_.DrawInto(memory, jpeg, serves);
  }
  std::optional<Size> DrawWhenSeen(const FrameBytes& jpeg, std::span<const JpegTarget> targets) override {
    return decoder_.DrawWhenSeen(jpeg, targets);
  }
  std::optional<Size> SizeOf(const FrameBytes& jpeg) override { return decoder_.SizeOf(jpeg); }

 private:
  JpegDecoder& decoder_;
};

}  // namespace orbelcast
