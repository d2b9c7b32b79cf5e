#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <vector>

#include "adapters/jpeg/double_size.h"
#include "adapters/jpeg/jpeg_codec.h"
#include "adapters/jpeg/surface_pool.h"
#include "platform/jpeg_decoder.h"
#include "toolkit/surface.h"

namespace orbelcast {

/// The decoder.
///
/// A picture is decoded beside its targets, at the smallest of the fast scales that serves all of them. Where that
/// gives a target's own size the two exchange their memory, so that nothing is copied and a picture that turns out to
/// be damaged leaves no trace; the others are scaled from it. Of a small one, such as motion detection's thumbnail, the
/// rows are made while the picture's are still in the processor's cache.
///
/// The last decoded picture is identified by the frame's serial. It is kept in a surface of the decoder's own or, after
/// an exchange, found in the target (by its memory and revision), and serves every further drawing of the frame that is
/// not much larger.
class TurboJpegDecoder final : public JpegDecoder {
 public:
  TurboJpegDecoder() = default;
  TurboJpegDecoder(const TurboJpegDecoder&) = delete;
  TurboJpegDecoder& operator=(const TurboJpegDecoder&) = delete;

  std::optional<Size> DrawOnAll(const FrameBytes& jpeg, std::span<const JpegTarget> targets, Size serves = {}) override;
  bool DrawInto(const PixelMemory& memory, const FrameBytes& jpeg, Size serves) override;
  std::optional<Size> SizeOf(const FrameBytes& jpeg) override;

  /// How often entropy-coded data was decoded; for tests and benchmarks.
  std::uint64_t Decodes() const { return decodes_; }

 private:
  /// A target whose size is known.
  struct Place {
    Surface* surface;    ///< Null where it is memory of somebody else's.
    PixelMemory memory;  ///< That.
    int x;
    int y;
    int width;
    int height;
    Surface rows;    ///< A small place's pixels while they are made beside its surface; empty for any other.
    int wanted = 0;  ///< How many of these rows are made: those below its surface are not.
    int ready = 0;   ///< How many of them are there.

    bool IsCorner() const { return x == 0 && y == 0; }
    bool Holds(const Surface::Block& block) const { return surface != nullptr && surface->Memory().get() == &block; }
    int RowsSeen() const {
      const int end = surface != nullptr ? surface->Height() : memory.height;
      return static_cast<int>(std::clamp<std::int64_t>(std::int64_t{end} - y, 0, height));
    }
    bool Has(Size size) const { return width == size.width && height == size.height; }
  };

  void TakePlaces(std::span<const JpegTarget> targets);
  void SizePlaces();

  bool DrawAgain(const FrameBytes& jpeg);
  bool Decode(const FrameBytes& jpeg);
  unsigned Scale() const;
  bool DecodeInto(Surface& growing, unsigned eighths);
  void BeginRows(Size decoded);
  static void GrowRows(Place& place, const Surface& growing, int rows);
  void Keep(Surface& holder, std::uint64_t serial);

  bool CanDraw(const Surface::Block& decoded, const Place& place) const;
  bool Draw(const Surface::Block& decoded, const Place& place);
  bool DrawScaled(const Surface::Block& decoded, const Place& place, const PixelMemory& target);

  JpegCodec codec_;
  SurfacePool pool_;
  DoubleSize double_size_;
  std::vector<Place> places_;  ///< Those of the call; a member for its memory's sake.
  Size serves_;

  // The frame decoded last, and where its picture is; serial 0 for none.
  std::uint64_t serial_ = 0;
  std::weak_ptr<const Surface::Block> decoded_;
  std::uint64_t decoded_revision_ = 0;
  Size decoded_size_;
  Surface own_;  ///< Keeps it where it is not a target's.

  Size native_;
  std::uint64_t decodes_ = 0;
};

}  // namespace orbelcast
