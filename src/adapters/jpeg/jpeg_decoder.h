#pragma once

#include <cstdint>
#include <memory>

#include "adapters/jpeg/double_size.h"
#include "adapters/jpeg/jpeg_codec.h"
#include "adapters/jpeg/surface_pool.h"
#include "platform/jpeg_decoder.h"
#include "toolkit/surface.h"

/// Pictures decoded by libjpeg-turbo and scaled by libyuv.
namespace orbelcast {

/// The decoder.
///
/// A picture is decoded beside its target, at the smallest of the fast scales that serves. Where that gives the
/// target's own size the two exchange their memory, so that nothing is copied and a picture that turns out to be
/// damaged leaves no trace; otherwise it is scaled into the target.
///
/// What was decoded last is known by the frame's serial. It is kept in a surface of the decoder's own or, after an
/// exchange, found in the target (by its memory and revision), and serves every further drawing of the frame that is
/// not much larger. A small second drawing of each frame, as motion detection makes, is foreseen after the first frame:
/// its rows are made while the picture's are still in the processor's cache.
class TurboJpegDecoder final : public JpegDecoder {
 public:
  TurboJpegDecoder() = default;
  TurboJpegDecoder(const TurboJpegDecoder&) = delete;
  TurboJpegDecoder& operator=(const TurboJpegDecoder&) = delete;

  bool DrawJpeg(Surface& target, const FrameBytes& jpeg, int width, int height) override;
  bool DrawJpegAt(Surface& target, const FrameBytes& jpeg, int x, int y, int width, int height) override;
  int JpegWidth() const override { return native_width_; }
  int JpegHeight() const override { return native_height_; }

  /// How often entropy-coded data was decoded; for tests and benchmarks.
  std::uint64_t Decodes() const { return decodes_; }

 private:
  struct Rectangle {
    int x;
    int y;
    int width;
    int height;
  };

  bool Decode(Surface& target, const FrameBytes& jpeg, Rectangle place);
  unsigned ScaleFor(const Rectangle& place) const;
  bool DecodeInto(Surface& growing, unsigned eighths);
  bool DrawAgain(Surface& target, const Rectangle& place);
  bool DrawScaled(const Surface::Block& decoded, Surface& target, const Rectangle& place);
  /// The part of a place that lies on the target; without width or height where none does.
  static Rectangle Visible(const Rectangle& place, const Surface& target);
  /// Copies a picture that has the place's size.
  static void Copy(const Surface::Block& picture, Surface& target, const Rectangle& place);

  void BeginThumbnail();
  void GrowThumbnail(const Surface& growing, int rows);
  void ForeseeThumbnail(const Rectangle& place);
  void DrawThumbnail(Surface& target, const Rectangle& place);

  JpegCodec codec_;
  SurfacePool pool_;
  DoubleSize double_size_;

  // The frame decoded last, and where its picture is; serial 0 for none.
  std::uint64_t serial_ = 0;
  std::weak_ptr<const Surface::Block> decoded_;
  std::uint64_t decoded_revision_ = 0;
  int decoded_width_ = 0;
  int decoded_height_ = 0;
  Surface own_;  ///< Keeps it where it is not the target's.

  Surface thumbnail_;              ///< The small drawing that is foreseen; empty where none is.
  int thumbnail_rows_ = 0;         ///< How much of it is there. Complete, it belongs to the frame decoded last.
  bool thumbnail_wanted_ = false;  ///< Drawn from since it was begun.

  int native_width_ = 0;
  int native_height_ = 0;
  std::uint64_t decodes_ = 0;
};

}  // namespace orbelcast
