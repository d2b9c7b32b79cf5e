#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "platform/dialogs.h"
#include "platform/jpeg_clip.h"

namespace orbelcast {

/// The parameters of a video stream, set before its first sample. The buffer size that its header suggests to players
/// is the largest frame's, which the writer of the file knows at its end; the compression decides which frames are key
/// frames.
struct AviStreamInfo {
  std::int32_t scale = 1;  ///< `rate` / `scale` frames a second.
  std::int32_t rate = 1;
  std::int32_t width = 0;  ///< Pixels.
  std::int32_t height = 0;
};

/// One picture of a clip: the pixel bytes of a bitmap, rows from the bottom, each filled up to four bytes.
struct AviSample {
  std::int32_t width = 0;  ///< Pixels.
  std::int32_t height = 0;
  std::span<const std::uint8_t> pixels;  ///< In the stream's format, 24 bits a pixel.
};

/// A clip that is being written: one video stream, steps in this order. A step that fails answers false and can be
/// tried again; nothing throws. Destroying it closes the file, as Release does.
class AviFile {
 public:
  virtual ~AviFile() = default;

  virtual bool CreateStream(const AviStreamInfo& info) = 0;
  /// Makes the compressed stream, with one of AviFiles::Codecs().
  virtual bool MakeCompressedStream(const Dialogs::Compression& choice) = 0;
  /// The format of the samples: a bitmap information header and its colour table, as a BMP file has them.
  virtual bool SetFormat(std::span<const std::uint8_t> bitmap_info) = 0;
  /// Writes one picture at a position counted from 0. Positions only grow; one that is skipped is an empty frame, which
  /// players show as the picture before it. A picture of another size than the format's is fitted into it.
  virtual bool Write(std::int32_t position, const AviSample& sample) = 0;
  /// Finishes and closes the file. The frames written stay.
  virtual void Release() = 0;
};

/// Makes clips. This one can make none.
class AviFiles {
 public:
  virtual ~AviFiles() = default;
  /// The compressions offered, by the names that people see.
  virtual std::vector<std::string> Codecs() const { return {}; }
  /// Creates the file; null where it cannot be created.
  virtual std::unique_ptr<AviFile> Create(const std::string& /*path*/) { return nullptr; }
  /// Creates a clip of pictures that are compressed already; null where it cannot be created. An empty path is the
  /// process's standard output.
  virtual std::unique_ptr<JpegClip> CreateOfJpegs(const std::string& /*path*/, const JpegClip::Header& /*header*/) {
    return nullptr;
  }
};

}  // namespace orbelcast
