#include "adapters/jpeg/jpeg_decoder.h"

#include <libyuv/scale_argb.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include "toolkit/pictures_on_demand.h"

namespace orbelcast {

namespace {

/// The scales that libjpeg-turbo has fast code for, as eighths.
constexpr std::array<unsigned, 4> kScales{1, 2, 4, 8};

/// How far a decoded picture may fall short of its place, to be stretched: by up to a third. The loss in sharpness is
/// below that of the JPEG's own quantisation.
constexpr int kEnoughNumerator = 2;
constexpr int kEnoughDenominator = 3;

/// The opacity of a pixel: all of it.
constexpr std::uint32_t kOpaque = 0xff000000;
/// The longest side that libyuv scales: its positions are 16.16 fixed-point numbers.
constexpr int kMaxScaledSide = 32767;

/// A small target, whose rows are made while the picture grows: up to this many pixels, of a picture that is at least
/// twice as large.
constexpr std::int64_t kMaxSmallPixels = 256 * 256;
/// Rows of it that are made at once, while the picture's rows that they take are still in the cache.
constexpr int kSmallRowsAtOnce = 8;

/// Pixels that all surfaces of the process may have together, for one more picture to be decoded: the largest one is
/// shown, kept at its own size, and decoded anew.
constexpr std::int64_t kMaxPixelsInUse = 3LL * 64 * 1024 * 1024;
/// A picture of an ordinary camera, 3840 × 2160, is decoded all the same: those that are large keep out no others.
constexpr std::int64_t kMaxOrdinaryPixels = 3840LL * 2160;

bool HasRoom(Size size) {
  const std::int64_t pixels = std::int64_t{size.width} * size.height;
  return pixels <= kMaxOrdinaryPixels || pixels_in_use + pixels <= kMaxPixelsInUse;
}

Size ScaledSize(Size size, unsigned eighths) {
  const auto scaled = [=](int side) { return (side * static_cast<int>(eighths) + 7) / 8; };
  return {scaled(size.width), scaled(size.height)};
}

int LongerSide(Size size) {
  return std::max(size.width, size.height);
}

bool Enough(Size have, int width, int height) {
  const auto enough = [](int side, int want) {
    return std::int64_t{side} * kEnoughDenominator >= std::int64_t{want} * kEnoughNumerator;
  };
  return enough(have.width, width) && enough(have.height, height);
}

PixelMemory MemoryOf(Surface& surface) {
  return {surface.MutablePixels().data(), surface.Width(), surface.Height(), surface.Height(), surface.Width()};
}

std::uint32_t* At(const PixelMemory& memory, int x, int y) {
  return memory.first + y * memory.stride + x;
}

std::uint8_t* Bytes(std::uint32_t* pixels) {
  return reinterpret_cast<std::uint8_t*>(pixels);
}
const std::uint8_t* Bytes(const std::uint32_t* pixels) {
  return reinterpret_cast<const std::uint8_t*>(pixels);
}

/// The part of a surface that a place covers, from `left`, `top` up to but without `right`, `bottom`; empty where it
/// is outside.
struct VisiblePart {
  int left;
  int top;
  int right;
  int bottom;

  VisiblePart(const PixelMemory& target, int x, int y, int width, int height)
      : left(std::max(x, 0)),
        top(std::max(y, 0)),
        right(End(x, width, target.width)),
        bottom(End(y, height, target.height)) {}
  int Width() const { return right - left; }
  int Height() const { return bottom - top; }
  bool Empty() const { return right <= left || bottom <= top; }

 private:
  static int End(int start, int size, int limit) {
    return static_cast<int>(std::clamp<std::int64_t>(std::int64_t{start} + size, 0, limit));
  }
};

/// Brings back the opacity of pixels that libyuv has stretched, which takes a little off every channel.
void MakeOpaque(const PixelMemory& target, const VisiblePart& part) {
  for (int y = part.top; y < part.bottom; ++y) {
    std::uint32_t* const row = At(target, part.left, y);
    for (int x = 0; x < part.Width(); ++x) row[x] |= kOpaque;
  }
}

/// Draws a picture of `size` pixels at (x, y), pixel by pixel.
void Copy(const std::uint32_t* picture, Size size, const PixelMemory& target, int x, int y) {
  const VisiblePart seen(target, x, y, size.width, size.height);
  if (seen.Empty()) return;
  for (int row = seen.top; row < std::min(seen.bottom, target.rows); ++row) {
    const std::uint32_t* from = picture + std::ptrdiff_t{row - y} * size.width + (seen.left - x);
    std::copy_n(from, seen.Width(), At(target, seen.left, row));
  }
}

}  // namespace

std::optional<Size> TurboJpegDecoder::SizeOf(const FrameBytes& jpeg) {
  if (jpeg.Empty()) return std::nullopt;
  if (jpeg.Serial() == serial_) return native_;
  if (!codec_.Begin(jpeg)) return std::nullopt;
  return codec_.OwnSize();
}

std::optional<Size> TurboJpegDecoder::DrawOnAll(const FrameBytes& jpeg, std::span<const JpegTarget> targets,
                                                Size serves) {
  // Drawings that a target still has to make come first: one may be a picture of this decoder.
  for (const JpegTarget& target : targets) target.surface.Settle();
  TakePlaces(targets);
  serves_ = serves;
  const bool drawn = !jpeg.Empty() && !places_.empty() && (DrawAgain(jpeg) || Decode(jpeg));
  places_.clear();
  if (!drawn) return std::nullopt;
  return native_;
}

bool TurboJpegDecoder::DrawInto(const PixelMemory& memory, const FrameBytes& jpeg, Size serves) {
  places_.clear();
  places_.push_back({.surface = nullptr,
                     .memory = memory,
                     .x = 0,
                     .y = 0,
                     .width = memory.width,
                     .height = memory.height,
                     .rows = {}});
  serves_ = serves;
  const bool drawn = !jpeg.Empty() && (DrawAgain(jpeg) || Decode(jpeg));
  places_.clear();
  return drawn;
}

void TurboJpegDecoder::TakePlaces(std::span<const JpegTarget> targets) {
  places_.clear();
  for (const JpegTarget& target : targets) {
    if (IsLeftOut(target)) continue;
    places_.push_back({.surface = &target.surface,
                       .memory = {},
                       .x = target.x,
                       .y = target.y,
                       .width = target.width,
                       .height = target.height,
                       .rows = {}});
  }
}

void TurboJpegDecoder::SizePlaces() {
  for (Place& place : places_) {
    if (place.width == 0) place.width = native_.width;
    if (place.height == 0) place.height = native_.height;
  }
}

// False where the frame has to be decoded, for the first time or again.
bool TurboJpegDecoder::DrawAgain(const FrameBytes& jpeg) {
  if (jpeg.Serial() != serial_) return false;
  SizePlaces();
  const auto decoded = decoded_.lock();
  if (!decoded || decoded->revision != decoded_revision_) return false;
  if (!std::ranges::all_of(places_, [&](const Place& place) { return CanDraw(*decoded, place); })) return false;
  return std::ranges::all_of(places_, [&](const Place& place) { return Draw(*decoded, place); });
}

bool TurboJpegDecoder::CanDraw(const Surface::Block& decoded, const Place& place) const {
  // A surface cannot be drawn onto itself, except where the picture is already in place.
  if (place.Holds(decoded)) return place.IsCorner() && place.Has(decoded_size_);
  const bool native = decoded_size_.width == native_.width && decoded_size_.height == native_.height;
  return (native || Enough(decoded_size_, place.width, place.height)) && LongerSide(decoded_size_) <= kMaxScaledSide;
}

bool TurboJpegDecoder::Decode(const FrameBytes& jpeg) {
  serial_ = 0;
  pool_.Give(std::move(own_));  // The picture before, which serves nobody any more.
  if (!codec_.Begin(jpeg)) return false;
  native_ = codec_.OwnSize();
  SizePlaces();
  const unsigned eighths = Scale();
  decoded_size_ = ScaledSize(native_, eighths);
  if (!HasRoom(decoded_size_)) return codec_.Abandon();
  if (places_.size() == 1 && places_.front().surface == nullptr && places_.front().Has(decoded_size_)) {
    ++decodes_;
    return codec_.Finish(places_.front().memory, eighths, [](int) {});
  }
  Surface growing = pool_.Take(decoded_size_.width, decoded_size_.height);
  const bool complete = !growing.Empty() && DecodeInto(growing, eighths);
  if (!complete) codec_.Abandon();
  bool drawn = complete;
  if (complete) {
    const auto fits = std::ranges::find_if(places_, [&](const Place& place) {
      return place.surface != nullptr && place.IsCorner() && place.Has(decoded_size_) &&
             place.surface->Width() == place.width && place.surface->Height() == place.height;
    });
    Surface& holder = fits != places_.end() ? *fits->surface : own_;
    holder.Swap(growing);
    Keep(holder, jpeg.Serial());
    for (const Place& place : places_) drawn &= Draw(*holder.Memory(), place);
  }
  pool_.Give(std::move(growing));
  for (Place& place : places_) pool_.Give(std::move(place.rows));
  return drawn;
}

unsigned TurboJpegDecoder::Scale() const {
  // Shown at its own size alone a picture needs no scaling, however long its sides.
  if (places_.size() == 1 && places_.front().IsCorner() && places_.front().Has(native_)) return 8;
  unsigned longest = 8;
  while (LongerSide(ScaledSize(native_, longest)) > kMaxScaledSide) longest /= 2;
  for (const unsigned scale : kScales) {
    const auto serves = [have = ScaledSize(native_, scale)](const Place& place) {
      return Enough(have, place.width, place.height);
    };
    const bool served = Enough(ScaledSize(native_, scale), serves_.width, serves_.height);
    if (scale >= longest || (served && std::ranges::all_of(places_, serves))) return scale;
  }
  return longest;
}

bool TurboJpegDecoder::DecodeInto(Surface& growing, unsigned eighths) {
  ++decodes_;
  BeginRows(decoded_size_);
  return codec_.Finish(MemoryOf(growing), eighths, [&](int rows) {
    for (Place& place : places_) {
      if (!place.rows.Empty()) GrowRows(place, growing, rows);
    }
  });
}

void TurboJpegDecoder::BeginRows(Size decoded) {
  if (LongerSide(decoded) > kMaxScaledSide) return;
  for (Place& place : places_) {
    const bool small = std::int64_t{place.width} * place.height <= kMaxSmallPixels &&
                       place.width * 2 <= decoded.width && place.height * 2 <= decoded.height;
    if (!small) continue;
    place.rows = pool_.Take(place.width, place.height);
    place.wanted = place.RowsSeen();
  }
}

void TurboJpegDecoder::GrowRows(Place& place, const Surface& growing, int rows) {
  // A row takes those of the picture around its middle; that all those of its height are there is enough.
  const std::int64_t made =
      rows == growing.Height() ? place.height : std::int64_t{rows - 1} * place.height / growing.Height();
  const int ready = static_cast<int>(std::min<std::int64_t>(made, place.wanted));
  if (ready == place.ready || (ready < place.ready + kSmallRowsAtOnce && ready < place.wanted)) return;
  libyuv::ARGBScaleClip(Bytes(growing.Pixels().data()), growing.Width() * 4, growing.Width(), growing.Height(),
                        Bytes(place.rows.MutablePixels().data()), place.width * 4, place.width, place.height, 0,
                        place.ready, place.width, ready - place.ready, libyuv::kFilterBilinear);
  const PixelMemory memory = MemoryOf(place.rows);
  MakeOpaque(memory, {memory, 0, place.ready, place.width, ready - place.ready});
  place.ready = ready;
}

void TurboJpegDecoder::Keep(Surface& holder, std::uint64_t serial) {
  serial_ = serial;
  decoded_ = holder.Memory();
  decoded_revision_ = holder.Revision();
}

bool TurboJpegDecoder::Draw(const Surface::Block& decoded, const Place& place) {
  if (place.Holds(decoded)) return true;
  const PixelMemory target = place.surface != nullptr ? MemoryOf(*place.surface) : place.memory;
  if (!place.rows.Empty()) {
    Copy(place.rows.Pixels().data(), {place.width, place.height}, target, place.x, place.y);
    return true;
  }
  if (place.Has(decoded_size_)) {
    Copy(decoded.pixels.data(), decoded_size_, target, place.x, place.y);
    return true;
  }
  return DrawScaled(decoded, place, target);
}

bool TurboJpegDecoder::DrawScaled(const Surface::Block& decoded, const Place& place, const PixelMemory& target) {
  VisiblePart seen(target, place.x, place.y, place.width, place.height);
  if (seen.Empty()) return true;
  const bool whole = seen.Width() == place.width && seen.Height() == place.height;
  if (whole && place.Has({2 * decoded_size_.width, 2 * decoded_size_.height})) {
    double_size_.Draw(decoded.pixels.data(), decoded_size_.width, decoded_size_.height, At(target, place.x, place.y),
                      target.stride, target.rows - place.y);
    return true;
  }
  seen.bottom = std::min(seen.bottom, target.rows);
  // libyuv counts from the place's own corner, which may be outside the target; it writes the clipped part alone.
  const std::ptrdiff_t stride = target.stride * 4;
  std::uint8_t* corner = Bytes(target.first) + place.y * stride + std::ptrdiff_t{place.x} * 4;
  if (libyuv::ARGBScaleClip(Bytes(decoded.pixels.data()), decoded_size_.width * 4, decoded_size_.width,
                            decoded_size_.height, corner, static_cast<int>(stride), place.width, place.height,
                            seen.left - place.x, seen.top - place.y, seen.Width(), seen.Height(),
                            libyuv::kFilterBilinear) != 0) {
    return false;
  }
  MakeOpaque(target, seen);
  return true;
}

}  // namespace orbelcast
