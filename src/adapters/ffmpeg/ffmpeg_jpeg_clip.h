#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "adapters/ffmpeg/avi_muxer.h"
#include "adapters/ffmpeg/clip_file.h"
#include "adapters/ffmpeg/container.h"
#include "platform/jpeg_clip.h"

namespace orbelcast {

/// A clip of JPEG pictures that go into the file as they are.
class FfmpegJpegClip final : public JpegClip {
 public:
  /// Writes the header; null where that fails.
  static std::unique_ptr<FfmpegJpegClip> Begin(std::unique_ptr<ClipFile> file, const Header& header);
  /// Finishes the file.
  ~FfmpegJpegClip() override;

  bool Write(std::span<const std::uint8_t> jpeg, std::chrono::milliseconds at) override;

 private:
  FfmpegJpegClip(std::unique_ptr<ClipFile> file, const Header& header) : header_(header), file_(std::move(file)) {}
  bool BeginAvi();
  bool BeginMatroska();
  void Describe(AVStream& stream) const;
  bool WriteToAvi(std::chrono::milliseconds at);
  bool WriteToMatroska(std::chrono::milliseconds at);

  const Header header_;
  const std::unique_ptr<ClipFile> file_;
  std::unique_ptr<AviMuxer> avi_;      ///< Either this
  std::optional<Container> matroska_;  ///< or that one.
  bool open_ = false;                  ///< Of Matroska: it can be written to.
  std::int64_t last_time_ = -1;        ///< Milliseconds.
  std::int64_t packets_ = 0;
  av::Owned<AVPacket> packet_{av_packet_alloc()};
};

}  // namespace orbelcast
