#include "adapters/jpeg/jpeg_decoder.h"

#include <libyuv/scale_argb.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace orbelcast {

namespace {

/// The scales that libjpeg-turbo has fast code for, as eighths.
constexpr std::array<unsigned, 4> kScales{1, 2, 4, 8};

/// How far a decoded picture may fall short of its place, to be stretched: by up to a third. What it costs in sharpness
/// is below what the JPEG's own quantisation took.
constexpr int kEnoughNumerator = 2;
constexpr int kEnoughDenominator = 3;

/// The part of a pixel that says how much of it covers what lies behind: all.
constexpr std::uint32_t kOpaque = 0xff000000;
/// The longest side that libyuv scales: its positions are 16.16 fixed-point numbers.
constexpr int kMaxScaledSide = 32767;

/// A drawing is foreseen up to this many pixels, and where it takes a picture that is at least twice as large.
constexpr std::int64_t kMaxThumbnailPixels = 256 * 256;
/// Rows of it that are made at once, while the picture's rows that they take are still in the cache.
constexpr int kThumbnailRows = 8;

/// Pixels that all surfaces of the process may have together, for one more picture to be decoded: the largest one is
/// shown, kept at its own size, and decoded anew.
constexpr std::int64_t kMaxPixelsInUse = 3LL * 64 * 1024 * 1024;
/// A picture of an ordinary camera, 3840 × 2160, is decoded all the same: those that are large keep out no others.
constexpr std::int64_t kMaxOrdinaryPixels = 3840LL * 2160;

bool HasRoom(std::int64_t pixels) {
  return pixels <= kMaxOrdinaryPixels || pixels_in_use + pixels <= kMaxPixelsInUse;
}

int ScaledSize(int size, unsigned eighths) {
  return (size * static_cast<int>(eighths) + 7) / 8;
}

bool Enough(int have, int want) {
  return std::int64_t{have} * kEnoughDenominator >= std::int64_t{want} * kEnoughNumerator;
}

std::uint32_t* At(Surface& surface, int x, int y) {
  return &surface.MutablePixels()[static_cast<std::size_t>(y) * static_cast<std::size_t>(surface.Width()) +
                                  static_cast<std::size_t>(x)];
}

std::uint8_t* Bytes(std::uint32_t* pixels) {
  return reinterpret_cast<std::uint8_t*>(pixels);
}
const std::uint8_t* Bytes(const std::uint32_t* pixels) {
  return reinterpret_cast<const std::uint8_t*>(pixels);
}

}  // namespace

bool TurboJpegDecoder::DrawJpeg(Surface& target, const FrameBytes& jpeg, int width, int height) {
  return DrawJpegAt(target, jpeg, 0, 0, width, height);
}

bool TurboJpegDecoder::DrawJpegAt(Surface& target, const FrameBytes& jpeg, int x, int y, int width, int height) {
  if (jpeg.Empty() || width < 0 || height < 0 || width > Surface::kMaxSide || height > Surface::kMaxSide) return false;
  Rectangle place{x, y, width, height};
  if (jpeg.Serial() != serial_) return Decode(target, jpeg, place);
  if (width == 0) place.width = native_width_;
  if (height == 0) place.height = native_height_;
  return DrawAgain(target, place) || Decode(target, jpeg, place);
}

bool TurboJpegDecoder::Decode(Surface& target, const FrameBytes& jpeg, Rectangle place) {
  if (!codec_.Begin(jpeg.Bytes())) return false;
  if (place.width == 0) place.width = codec_.Width();
  if (place.height == 0) place.height = codec_.Height();
  const unsigned eighths = ScaleFor(place);
  const int width = ScaledSize(codec_.Width(), eighths);
  const int height = ScaledSize(codec_.Height(), eighths);
  const bool fits = place.x == 0 && place.y == 0 && place.width == width && place.height == height &&
                    target.Width() == width && target.Height() == height;
  serial_ = 0;
  BeginThumbnail();
  if (!HasRoom(std::int64_t{width} * height)) return codec_.Abandon();
  Surface growing = pool_.Take(width, height);
  if (growing.Empty() || !DecodeInto(growing, eighths)) {
    codec_.Abandon();
    pool_.Give(std::move(growing));
    return false;
  }
  native_width_ = codec_.Width();
  native_height_ = codec_.Height();
  Surface& decoded = fits ? target : own_;
  decoded.Swap(growing);
  pool_.Give(std::move(growing));
  serial_ = jpeg.Serial();
  decoded_ = decoded.Memory();
  decoded_revision_ = decoded.Revision();
  decoded_width_ = width;
  decoded_height_ = height;
  return fits || DrawScaled(*decoded.Memory(), target, place);
}

unsigned TurboJpegDecoder::ScaleFor(const Rectangle& place) const {
  const int width = codec_.Width();
  const int height = codec_.Height();
  // Shown at its own size a picture needs no scaling, however long its sides.
  if (place.width == width && place.height == height && place.x == 0 && place.y == 0) return 8;
  unsigned longest = 8;
  while (ScaledSize(std::max(width, height), longest) > kMaxScaledSide) longest /= 2;
  for (const unsigned scale : kScales) {
    if (scale >= longest ||
        (Enough(ScaledSize(width, scale), place.width) && Enough(ScaledSize(height, scale), place.height))) {
      return scale;
    }
  }
  return longest;
}

bool TurboJpegDecoder::DecodeInto(Surface& growing, unsigned eighths) {
  ++decodes_;
  JpegCodec::RowsDone rows_done;
  if (!thumbnail_.Empty()) rows_done = [&](int rows) { GrowThumbnail(growing, rows); };
  return codec_.Finish(growing, eighths, rows_done);
}

// False where the frame has to be decoded again.
bool TurboJpegDecoder::DrawAgain(Surface& target, const Rectangle& place) {
  if (thumbnail_rows_ > 0 && place.width == thumbnail_.Width() && place.height == thumbnail_.Height()) {
    DrawThumbnail(target, place);
    return true;
  }
  const auto decoded = decoded_.lock();
  if (!decoded || decoded->revision != decoded_revision_) return false;
  if (decoded == target.Memory()) {
    // It is there already; but it cannot be its own source.
    return place.x == 0 && place.y == 0 && place.width == decoded_width_ && place.height == decoded_height_;
  }
  const bool native = decoded_width_ == native_width_ && decoded_height_ == native_height_;
  if (!native && !(Enough(decoded_width_, place.width) && Enough(decoded_height_, place.height))) return false;
  if (std::max(decoded_width_, decoded_height_) > kMaxScaledSide) return false;
  ForeseeThumbnail(place);
  return DrawScaled(*decoded, target, place);
}

bool TurboJpegDecoder::DrawScaled(const Surface::Block& decoded, Surface& target, const Rectangle& place) {
  if (place.width == decoded_width_ && place.height == decoded_height_) {
    Copy(decoded, target, place);
    return true;
  }
  const Rectangle seen = Visible(place, target);
  if (seen.width <= 0 || seen.height <= 0) return true;
  const bool whole = seen.width == place.width && seen.height == place.height;
  if (whole && place.width == 2 * decoded_width_ && place.height == 2 * decoded_height_) {
    double_size_.Draw(decoded.pixels.data(), decoded_width_, decoded_height_, At(target, place.x, place.y),
                      target.Width());
    return true;
  }
  // libyuv counts from the place's own corner, which may lie outside the target; it writes the clipped part alone.
  const std::ptrdiff_t stride = std::ptrdiff_t{target.Width()} * 4;
  std::uint8_t* corner = Bytes(target.MutablePixels().data()) + place.y * stride + std::ptrdiff_t{place.x} * 4;
  if (libyuv::ARGBScaleClip(Bytes(decoded.pixels.data()), decoded_width_ * 4, decoded_width_, decoded_height_, corner,
                            static_cast<int>(stride), place.width, place.height, seen.x - place.x, seen.y - place.y,
                            seen.width, seen.height, libyuv::kFilterBilinear) != 0) {
    return false;
  }
  // Where it stretches, libyuv's arithmetic takes a little off every channel, the opacity too.
  for (int y = seen.y; y < seen.y + seen.height; ++y) {
    std::uint32_t* const row = At(target, seen.x, y);
    for (int x = 0; x < seen.width; ++x) row[x] |= kOpaque;
  }
  return true;
}

TurboJpegDecoder::Rectangle TurboJpegDecoder::Visible(const Rectangle& place, const Surface& target) {
  const int left = std::max(place.x, 0);
  const int top = std::max(place.y, 0);
  const auto end = [](int start, int size, int limit) {
    return static_cast<int>(std::clamp<std::int64_t>(std::int64_t{start} + size, 0, limit));
  };
  return {left, top, end(place.x, place.width, target.Width()) - left,
          end(place.y, place.height, target.Height()) - top};
}

void TurboJpegDecoder::Copy(const Surface::Block& picture, Surface& target, const Rectangle& place) {
  const Rectangle seen = Visible(place, target);
  if (seen.width <= 0) return;
  for (int y = seen.y; y < seen.y + seen.height; ++y) {
    const std::uint32_t* from =
        picture.pixels.data() + static_cast<std::ptrdiff_t>(y - place.y) * place.width + (seen.x - place.x);
    std::copy_n(from, seen.width, At(target, seen.x, y));
  }
}

// The drawing that was foreseen for the last frame but did not come is not foreseen again.
void TurboJpegDecoder::BeginThumbnail() {
  if (!thumbnail_wanted_) thumbnail_ = {};
  thumbnail_wanted_ = false;
  thumbnail_rows_ = 0;
}

void TurboJpegDecoder::GrowThumbnail(const Surface& growing, int rows) {
  const int width = thumbnail_.Width();
  const int height = thumbnail_.Height();
  const bool complete = rows == growing.Height();
  // A row takes those of the picture around its middle; that all those of its height are there is enough.
  const int ready = complete ? height : static_cast<int>(std::int64_t{rows - 1} * height / growing.Height());
  if (ready < thumbnail_rows_ + kThumbnailRows && !complete) return;
  if (growing.Width() < width || growing.Height() < height ||
      std::max(growing.Width(), growing.Height()) > kMaxScaledSide) {
    return;
  }
  libyuv::ARGBScaleClip(Bytes(growing.Pixels().data()), growing.Width() * 4, growing.Width(), growing.Height(),
                        Bytes(thumbnail_.MutablePixels().data()), width * 4, width, height, 0, thumbnail_rows_, width,
                        ready - thumbnail_rows_, libyuv::kFilterBilinear);
  thumbnail_rows_ = ready;
}

void TurboJpegDecoder::ForeseeThumbnail(const Rectangle& place) {
  if (std::int64_t{place.width} * place.height > kMaxThumbnailPixels || place.width * 2 > decoded_width_ ||
      place.height * 2 > decoded_height_) {
    return;
  }
  thumbnail_.Resize(place.width, place.height, 0);
  thumbnail_rows_ = 0;
  thumbnail_wanted_ = true;
}

void TurboJpegDecoder::DrawThumbnail(Surface& target, const Rectangle& place) {
  Copy(*thumbnail_.Memory(), target, place);
  thumbnail_wanted_ = true;
}

}  // namespace orbelcast
