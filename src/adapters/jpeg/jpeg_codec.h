#pragma once

#include <csetjmp>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include <jpeglib.h>

#include "platform/jpeg_decoder.h"
#include "toolkit/surface.h"

namespace orbelcast {

/// libjpeg's decompressor, kept from picture to picture so that its memory is too.
///
/// It also keeps a picture's tables. One that brings others than the last picture did, or whose tables cannot be told
/// beforehand, gets a fresh decompressor: no picture is decoded with another one's tables. Where it brings no Huffman
/// tables at all, as Motion JPEG may, those of the standard serve.
///
/// `Begin`, then `Finish`, `Abandon` or another `Begin`. Its input is not trusted: pictures are bounded in size and in
/// scans, and a picture that does not decode without a sign of damage is refused as a whole.
class JpegCodec {
 public:
  /// Called while a picture grows: its first `rows` rows are complete. It may not throw.
  using RowsDone = std::function<void(int rows)>;

  JpegCodec();
  ~JpegCodec();
  JpegCodec(const JpegCodec&) = delete;
  JpegCodec& operator=(const JpegCodec&) = delete;

  /// Reads the header of `jpeg`, unless it is the one that was read last. False where there is none that can be read,
  /// or the picture has more than Surface::kMaxPixels. The bytes are kept until Finish, Abandon or another picture's
  /// Begin.
  bool Begin(const FrameBytes& jpeg);
  /// The picture's own size; after Begin.
  Size OwnSize() const {
    return {static_cast<int>(decompress_.image_width), static_cast<int>(decompress_.image_height)};
  }

  /// Decodes at `eighths` / 8 of the size into `target`, which has that size (rounded up). False where the picture is
  /// damaged; `target` then holds a part of it.
  bool Finish(const PixelMemory& target, unsigned eighths, const RowsDone& rows_done);
  bool Abandon();

 private:
  bool ReadHeader(std::span<const std::uint8_t> bytes);
  void Create();
  static JpegCodec& Of(j_common_ptr common) { return *static_cast<JpegCodec*>(common->client_data); }
  [[noreturn]] static void Fail(j_common_ptr common);
  static void OnMessage(j_common_ptr common, int level);
  static void OnProgress(j_common_ptr common);

  FrameBytes begun_;  ///< The picture whose header has been read, and no more of it.
  jpeg_decompress_struct decompress_{};
  jpeg_error_mgr errors_{};
  std::vector<std::uint32_t> unseen_row_;  ///< For the rows that a target does not have.
  jpeg_progress_mgr progress_{};
  std::jmp_buf failed_{};
  bool created_ = false;  ///< Else there was no memory for it.
  int max_scans_ = 0;
  std::optional<std::uint32_t> tables_;  ///< Those that the decompressor holds, a bit each; none where that is unknown.
  std::optional<std::uint32_t> brought_;  ///< Those of the picture that is being read.
};

}  // namespace orbelcast
