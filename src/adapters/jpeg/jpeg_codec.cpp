#include "adapters/jpeg/jpeg_codec.h"

#include <jerror.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <numeric>

namespace orbelcast {

namespace {

/// A progressive picture may have any number of scans, each of which costs a pass over all of it. Encoders write about
/// ten, which is also what the largest picture may have; smaller ones may have more.
constexpr int kUsualScans = 10;
constexpr int kMaxScans = 100;

/// Rows that are asked for at once; libjpeg gives as many as it has, which are a few.
constexpr std::size_t kRowsAtOnce = 16;

constexpr std::uint8_t kMarker = 0xff;
constexpr std::uint8_t kStartOfImage = 0xd8;
constexpr std::uint8_t kHuffmanTables = 0xc4;
constexpr std::uint8_t kQuantizationTables = 0xdb;
constexpr std::uint8_t kStartOfScan = 0xda;

/// The bytes of a segment's tables; a bit for each of them is set in `found`. False where it is not made of tables.
bool ReadTables(std::span<const std::uint8_t> segment, std::uint8_t kind, std::uint32_t& found) {
  constexpr std::size_t kLengths = 16;
  constexpr std::size_t kCoefficients = 64;
  while (!segment.empty()) {
    const unsigned head = segment[0];
    const bool huffman = kind == kHuffmanTables;
    std::size_t size = 1 + (huffman ? kLengths : kCoefficients * ((head >> 4) + 1));
    if (size > segment.size() || (head >> 4) > 1 || (head & 0xf) > 3) return false;
    if (huffman) size += std::accumulate(&segment[1], &segment[1] + kLengths, std::size_t{0});
    if (size > segment.size()) return false;
    const unsigned place = huffman ? 4 + ((head >> 4) * 4) : 0;
    found |= 1U << (place + (head & 0xf));
    segment = segment.subspan(size);
  }
  return true;
}

/// The tables that the picture brings before its first scan, a bit each; nothing where that cannot be told.
std::optional<std::uint32_t> TablesOf(std::span<const std::uint8_t> bytes) {
  std::uint32_t found = 0;
  for (std::size_t at = 2; at + 4 <= bytes.size() && bytes[at] == kMarker;) {
    const std::uint8_t kind = bytes[at + 1];
    if (kind == kStartOfScan) return found;
    const std::size_t size = std::size_t{bytes[at + 2]} << 8 | bytes[at + 3];
    if (size < 2 || at + 2 + size > bytes.size()) return std::nullopt;
    const bool tables = kind == kHuffmanTables || kind == kQuantizationTables;
    if (tables && !ReadTables(bytes.subspan(at + 4, size - 2), kind, found)) return std::nullopt;
    at += 2 + size;
  }
  return std::nullopt;
}

/// Warnings that mean that a part of the picture is damaged. Others have no visible effect, such as extra bytes between
/// two markers.
bool IsDamage(int warning) {
  switch (warning) {
    case JWRN_ARITH_BAD_CODE:
    case JWRN_BOGUS_PROGRESSION:
    case JWRN_HIT_MARKER:
    case JWRN_HUFF_BAD_CODE:
    case JWRN_JPEG_EOF:
    case JWRN_MUST_RESYNC:
      return true;
    default:
      return false;
  }
}

/// Four samples a pixel, cyan first, become a colour in place. Files with an Adobe marker hold them inverted.
void CmykToPixels(std::span<std::uint32_t> pixels, bool inverted) {
  for (std::uint32_t& pixel : pixels) {
    std::array<std::uint8_t, 4> ink{};
    std::memcpy(ink.data(), &pixel, sizeof pixel);
    if (!inverted) {
      for (auto& sample : ink) sample = static_cast<std::uint8_t>(255 - sample);
    }
    const auto shade = [&](std::size_t i) { return static_cast<std::uint32_t>(ink[i] * ink[3] / 255); };
    pixel = 0xff000000u | shade(0) << 16 | shade(1) << 8 | shade(2);
  }
}

}  // namespace

JpegCodec::JpegCodec() {
  jpeg_std_error(&errors_);
  errors_.error_exit = Fail;
  errors_.emit_message = OnMessage;
  errors_.output_message = [](j_common_ptr) {};
  progress_.progress_monitor = OnProgress;
  Create();
}

JpegCodec::~JpegCodec() {
  jpeg_destroy_decompress(&decompress_);
}

void JpegCodec::Create() {
  created_ = false;
  // Creating keeps both of these; an error in it jumps out by them.
  decompress_.err = &errors_;
  decompress_.client_data = this;
  if (setjmp(failed_) != 0) return;  // NOLINT(cert-err52-cpp): libjpeg's way to fail.
  jpeg_create_decompress(&decompress_);
  decompress_.progress = &progress_;
  created_ = true;
}

void JpegCodec::Fail(j_common_ptr common) {
  std::longjmp(Of(common).failed_, 1);
}

void JpegCodec::OnMessage(j_common_ptr common, int level) {
  if (level < 0 && IsDamage(common->err->msg_code)) Fail(common);
}

void JpegCodec::OnProgress(j_common_ptr common) {
  if (common->is_decompressor == FALSE) return;
  if (reinterpret_cast<j_decompress_ptr>(common)->input_scan_number > Of(common).max_scans_) Fail(common);
}

bool JpegCodec::Begin(const FrameBytes& jpeg) {
  if (!begun_.Empty()) {
    if (begun_.Serial() == jpeg.Serial()) return true;
    Abandon();
    tables_ = brought_;  // Nothing but the header was read.
  }
  if (!ReadHeader(jpeg.Bytes())) return false;
  begun_ = jpeg;
  return true;
}

bool JpegCodec::ReadHeader(std::span<const std::uint8_t> bytes) {
  if (bytes.size() < 4 || bytes[0] != kMarker || bytes[1] != kStartOfImage) return false;
  const auto tables = TablesOf(bytes);
  if (!tables || tables != tables_) {
    jpeg_destroy_decompress(&decompress_);
    Create();
  }
  if (!created_) return false;
  tables_.reset();
  brought_.reset();
  if (setjmp(failed_) != 0) return Abandon();  // NOLINT(cert-err52-cpp)
  jpeg_mem_src(&decompress_, bytes.data(), static_cast<unsigned long>(bytes.size()));
  if (jpeg_read_header(&decompress_, TRUE) != JPEG_HEADER_OK) return Abandon();
  const auto pixels = static_cast<std::int64_t>(decompress_.image_width) * decompress_.image_height;
  if (pixels <= 0 || pixels > Surface::kMaxPixels) return Abandon();
  if (jpeg_has_multiple_scans(&decompress_) == FALSE) brought_ = tables;
  max_scans_ =
      static_cast<int>(std::clamp<std::int64_t>(Surface::kMaxPixels * kUsualScans / pixels, kUsualScans, kMaxScans));
  return true;
}

bool JpegCodec::Finish(const PixelMemory& target, unsigned eighths, const RowsDone& rows_done) {
  if (setjmp(failed_) != 0) return Abandon();  // NOLINT(cert-err52-cpp)
  const bool cmyk = decompress_.num_components == 4;
  decompress_.scale_num = eighths;
  decompress_.scale_denom = 8;
  decompress_.out_color_space = cmyk ? JCS_CMYK : JCS_EXT_BGRA;
  decompress_.dct_method = JDCT_ISLOW;
  decompress_.do_fancy_upsampling = eighths == 8 ? TRUE : FALSE;
  jpeg_start_decompress(&decompress_);
  const auto width = static_cast<std::size_t>(decompress_.output_width);
  if (static_cast<int>(width) != target.width || static_cast<int>(decompress_.output_height) != target.height) {
    return Abandon();
  }
  if (target.rows < target.height) unseen_row_.resize(width);
  const bool adobe = decompress_.saw_Adobe_marker != FALSE;
  while (decompress_.output_scanline < decompress_.output_height) {
    const std::size_t first = decompress_.output_scanline;
    const auto row = [&](std::size_t i) {
      const auto y = static_cast<std::ptrdiff_t>(first + i);
      return y < target.rows ? target.first + y * target.stride : unseen_row_.data();
    };
    std::array<JSAMPROW, kRowsAtOnce> rows;
    const std::size_t count = std::min(rows.size(), decompress_.output_height - first);
    for (std::size_t i = 0; i < count; ++i) rows[i] = reinterpret_cast<JSAMPROW>(row(i));
    const std::size_t read = jpeg_read_scanlines(&decompress_, rows.data(), static_cast<JDIMENSION>(count));
    for (std::size_t i = 0; cmyk && i < read; ++i) CmykToPixels({row(i), width}, adobe);
    rows_done(static_cast<int>(decompress_.output_scanline));
  }
  jpeg_finish_decompress(&decompress_);
  begun_ = {};
  tables_ = brought_;
  return true;
}

bool JpegCodec::Abandon() {
  jpeg_abort_decompress(&decompress_);
  begun_ = {};
  return false;
}

}  // namespace orbelcast
