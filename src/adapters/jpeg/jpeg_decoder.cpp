#include "adapters/jpeg/jpeg_decoder.h"

#include <libyuv/scale_argb.h>

#include <algorithm>
#include <array>
#include <csetjmp>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <utility>

// libjpeg's headers want <cstdio> before them.
#include <jerror.h>
#include <jpeglib.h>

namespace orbelcast {

namespace {

/// A progressive picture may have any number of scans, each of which costs a pass over the whole picture. Encoders write
/// about ten.
constexpr int kMaxScans = 100;

/// The scales that libjpeg-turbo has fast code for, as eighths.
constexpr std::array<unsigned, 4> kScales{1, 2, 4, 8};

/// How far a decoded picture may fall short of its place, to be stretched: by up to a third. What it costs in sharpness is
/// below what the JPEG's own quantisation took.
constexpr int kEnoughNumerator = 2;
constexpr int kEnoughDenominator = 3;

int ScaledSize(int size, unsigned eighths) { return (size * static_cast<int>(eighths) + 7) / 8; }

bool Enough(int have, int want) { return have * kEnoughDenominator >= want * kEnoughNumerator; }

}  // namespace

// libjpeg's decompressor, kept from frame to frame so that its memory is too.
struct TurboJpegDecoder::Codec {
  jpeg_decompress_struct decompress{};
  jpeg_error_mgr errors{};
  jpeg_progress_mgr progress{};
  std::jmp_buf failed{};
  bool damaged = false;
  std::array<JSAMPROW, 16> rows{};

  Codec() {
    decompress.err = jpeg_std_error(&errors);
    decompress.client_data = this;
    errors.error_exit = [](j_common_ptr common) { std::longjmp(Of(common).failed, 1); };
    errors.emit_message = [](j_common_ptr common, int level) {
      // A negative level is a warning: the data is damaged. Bytes too many between two markers harm nothing.
      if (level < 0 && common->err->msg_code != JWRN_EXTRANEOUS_DATA) Of(common).damaged = true;
    };
    errors.output_message = [](j_common_ptr) {};
    progress.progress_monitor = [](j_common_ptr common) {
      if (!common->is_decompressor) return;
      if (reinterpret_cast<j_decompress_ptr>(common)->input_scan_number > kMaxScans) std::longjmp(Of(common).failed, 1);
    };
    if (setjmp(failed) != 0) return;  // NOLINT(cert-err52-cpp): libjpeg's way to fail.
    jpeg_create_decompress(&decompress);
    decompress.progress = &progress;
  }
  ~Codec() { jpeg_destroy_decompress(&decompress); }
  Codec(const Codec&) = delete;
  Codec& operator=(const Codec&) = delete;

  static Codec& Of(j_common_ptr common) { return *static_cast<Codec*>(common->client_data); }

  /// Reads the header; false where there is none that can be read, or the picture is too large.
  bool Begin(std::span<const std::uint8_t> bytes) {
    damaged = false;
    if (setjmp(failed) != 0) return Abandon();  // NOLINT(cert-err52-cpp)
    jpeg_mem_src(&decompress, bytes.data(), static_cast<unsigned long>(bytes.size()));
    if (jpeg_read_header(&decompress, TRUE) != JPEG_HEADER_OK) return Abandon();
    const auto pixels = static_cast<std::int64_t>(decompress.image_width) * decompress.image_height;
    return pixels <= Surface::kMaxPixels || Abandon();
  }

  /// Decodes at `eighths` / 8 of the size into `target`, which has that size. False where the picture is damaged.
  bool Finish(Surface& target, unsigned eighths) {
    const bool inverted_cmyk = decompress.num_components == 4;
    if (setjmp(failed) != 0) return Abandon();  // NOLINT(cert-err52-cpp)
    decompress.scale_num = eighths;
    decompress.scale_denom = 8;
    decompress.out_color_space = inverted_cmyk ? JCS_CMYK : JCS_EXT_BGRA;
    decompress.dct_method = JDCT_ISLOW;
    decompress.do_fancy_upsampling = eighths == 8 ? TRUE : FALSE;
    jpeg_start_decompress(&decompress);
    const auto width = static_cast<std::size_t>(decompress.output_width);
    if (static_cast<int>(width) != target.Width() || static_cast<int>(decompress.output_height) != target.Height()) {
      return Abandon();
    }
    std::uint32_t* pixels = target.MutablePixels().data();
    while (decompress.output_scanline < decompress.output_height) {
      const auto first = static_cast<std::size_t>(decompress.output_scanline);
      const std::size_t count = std::min(rows.size(), static_cast<std::size_t>(decompress.output_height) - first);
      for (std::size_t i = 0; i < count; ++i) rows[i] = reinterpret_cast<JSAMPROW>(pixels + (first + i) * width);
      jpeg_read_scanlines(&decompress, rows.data(), static_cast<JDIMENSION>(count));
    }
    const bool adobe = decompress.saw_Adobe_marker != FALSE;
    jpeg_finish_decompress(&decompress);
    if (inverted_cmyk) CmykToPixels(target, adobe);
    return !damaged;
  }

  bool Abandon() {
    jpeg_abort_decompress(&decompress);
    return false;
  }

  /// Four samples a pixel, cyan first, become a colour in place. Files with an Adobe marker hold them inverted.
  static void CmykToPixels(Surface& target, bool inverted) {
    for (std::uint32_t& pixel : target.MutablePixels()) {
      std::array<std::uint8_t, 4> ink{};
      std::memcpy(ink.data(), &pixel, sizeof pixel);
      if (!inverted) {
        for (auto& sample : ink) sample = static_cast<std::uint8_t>(255 - sample);
      }
      const auto shade = [&](int i) { return static_cast<std::uint32_t>(ink[static_cast<std::size_t>(i)] * ink[3] / 255); };
      pixel = 0xff000000u | shade(0) << 16 | shade(1) << 8 | shade(2);
    }
  }
};

TurboJpegDecoder::TurboJpegDecoder() : codec_(std::make_unique<Codec>()) {}
TurboJpegDecoder::~TurboJpegDecoder() = default;

bool TurboJpegDecoder::DrawJpeg(Surface& target, const FrameBytes& jpeg, int width, int height) {
  return DrawJpegAt(target, jpeg, 0, 0, width, height);
}

bool TurboJpegDecoder::DrawJpegAt(Surface& target, const FrameBytes& jpeg, int x, int y, int width, int height) {
  if (jpeg.Empty() || width < 0 || height < 0 || width > Surface::kMaxSide || height > Surface::kMaxSide) return false;
  const Rectangle place{x, y, width, height};
  if (width > 0 && height > 0 && Decoded(jpeg, place)) return DrawDecoded(target, place);
  return Decode(target, jpeg, place);
}

bool TurboJpegDecoder::Decode(Surface& target, const FrameBytes& jpeg, const Rectangle& wanted) {
  if (!codec_->Begin(jpeg.Bytes())) return false;
  const int native_width = static_cast<int>(codec_->decompress.image_width);
  const int native_height = static_cast<int>(codec_->decompress.image_height);
  Rectangle place = wanted;
  if (place.width == 0) place.width = native_width;
  if (place.height == 0) place.height = native_height;

  unsigned eighths = 8;
  for (const unsigned scale : kScales) {
    if (Enough(ScaledSize(native_width, scale), place.width) && Enough(ScaledSize(native_height, scale), place.height)) {
      eighths = scale;
      break;
    }
  }
  const int width = ScaledSize(native_width, eighths);
  const int height = ScaledSize(native_height, eighths);
  const bool fits = place.x == 0 && place.y == 0 && place.width == width && place.height == height &&
                    target.Width() == width && target.Height() == height;
  // A picture that turns out to be damaged must leave the target as it was: it grows beside it and is exchanged.
  Surface& growing = fits ? spare_ : scratch_;
  decoded_serial_ = 0;
  growing.Resize(width, height, 0);
  ++decodes_;
  if (growing.Empty() || !codec_->Finish(growing, eighths)) return false;
  native_width_ = native_width;
  native_height_ = native_height;
  if (fits) {
    target.Swap(spare_);
    Remember(target, jpeg);
    return true;
  }
  Remember(scratch_, jpeg);
  return DrawDecoded(target, place);
}

bool TurboJpegDecoder::DrawDecoded(Surface& target, const Rectangle& place) const {
  const auto block = decoded_block_.lock();
  const int left = std::max(place.x, 0);
  const int top = std::max(place.y, 0);
  const int right = std::min(place.x + place.width, target.Width());
  const int bottom = std::min(place.y + place.height, target.Height());
  if (!block || left >= right || top >= bottom) return block != nullptr;
  auto* to = reinterpret_cast<std::uint8_t*>(target.MutablePixels().data());
  const int stride = target.Width() * 4;
  // The destination's origin may lie outside the surface; only the clipped part is written.
  std::uint8_t* origin = to + static_cast<std::ptrdiff_t>(place.y) * stride + static_cast<std::ptrdiff_t>(place.x) * 4;
  return libyuv::ARGBScaleClip(reinterpret_cast<const std::uint8_t*>(block->pixels.data()), decoded_width_ * 4,
                               decoded_width_, decoded_height_, origin, stride, place.width, place.height,
                               left - place.x, top - place.y, right - left, bottom - top, libyuv::kFilterBilinear) == 0;
}

std::shared_ptr<const Surface::Block> TurboJpegDecoder::Decoded(const FrameBytes& jpeg, const Rectangle& place) const {
  if (jpeg.Serial() == 0 || jpeg.Serial() != decoded_serial_) return nullptr;
  auto block = decoded_block_.lock();
  if (!block || block->revision != decoded_revision_) return nullptr;
  const bool native = decoded_width_ == native_width_ && decoded_height_ == native_height_;
  if (native || (Enough(decoded_width_, place.width) && Enough(decoded_height_, place.height))) return block;
  return nullptr;
}

void TurboJpegDecoder::Remember(const Surface& surface, const FrameBytes& jpeg) {
  decoded_serial_ = jpeg.Serial();
  decoded_block_ = surface.Memory();
  decoded_revision_ = surface.Revision();
  decoded_width_ = surface.Width();
  decoded_height_ = surface.Height();
}

}  // namespace orbelcast
