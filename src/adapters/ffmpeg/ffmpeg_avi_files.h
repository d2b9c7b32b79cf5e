#pragma once

#include "platform/avi_file.h"

namespace orbelcast {

/// Makes clips in four compressions: "Uncompressed" and "HuffYUV", which keep the pictures exactly, "Motion JPEG" and
/// "MPEG-4", which take a data rate (without one, a quality that is hard to tell from the picture), the last one also a
/// key-frame interval (without one, the codec's twelve frames). The pixels are 24 bits, red, green and blue.
///
/// Each picture is on the disk when Write returns. A frame that no longer has room is refused and the file ends well
/// with those before it; a process that is killed leaves a file without an index, which players read from the front.
/// Of Matroska the last second may still be missing then.
/// The library's own messages go to its log, which is the process's.
class FfmpegAviFiles final : public AviFiles {
 public:
  std::vector<std::string> Codecs() const override;
  std::unique_ptr<AviFile> Create(const std::string& path) override;
  std::unique_ptr<JpegClip> CreateOfJpegs(const std::string& path, const JpegClip::Header& header) override;
};

}  // namespace orbelcast
