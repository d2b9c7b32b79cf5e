#include "adapters/ffmpeg/ffmpeg_avi_files.h"

#include <unistd.h>

#include <optional>
#include <utility>

#include "adapters/ffmpeg/avi_muxer.h"
#include "adapters/ffmpeg/clip_file.h"
#include "adapters/ffmpeg/ffmpeg_jpeg_clip.h"
#include "adapters/ffmpeg/picture_encoder.h"
#include "adapters/ffmpeg/picture_fitter.h"
#include "adapters/ffmpeg/pipe_file.h"

namespace orbelcast {

namespace {

/// A bitmap information header, as far as a clip's format goes.
struct Format {
  std::int32_t width;
  std::int32_t height;
};

constexpr std::size_t kInfoHeaderBytes = 40;

std::uint32_t Little(std::span<const std::uint8_t> bytes, std::size_t offset, std::size_t count) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < count; ++i) value |= std::uint32_t{bytes[offset + i]} << (8 * i);
  return value;
}

/// Pictures of 24 bits a pixel, not compressed, rows from the bottom; nothing for others.
std::optional<Format> ParseFormat(std::span<const std::uint8_t> bitmap_info) {
  if (bitmap_info.size() < kInfoHeaderBytes) return std::nullopt;
  const Format format{static_cast<std::int32_t>(Little(bitmap_info, 4, 4)),
                      static_cast<std::int32_t>(Little(bitmap_info, 8, 4))};
  const bool plain = Little(bitmap_info, 14, 2) == 24 && Little(bitmap_info, 16, 4) == 0;
  if (!plain || format.width <= 0 || format.height <= 0) return std::nullopt;
  return format;
}

class FfmpegAviFile final : public AviFile {
 public:
  explicit FfmpegAviFile(std::unique_ptr<ClipFile> file) : file_(std::move(file)) {}
  ~FfmpegAviFile() override { FfmpegAviFile::Release(); }

  bool CreateStream(const AviStreamInfo& info) override {
    if (!file_ || info.scale <= 0 || info.rate <= 0) return false;
    stream_ = info;
    return true;
  }

  bool MakeCompressedStream(const Dialogs::Compression& choice) override {
    // Opened here already, so that a compression that is not to be had is told at its own step.
    if (!file_ || !stream_ || !PictureEncoder::Open(choice, *stream_, stream_->width, stream_->height)) return false;
    choice_ = choice;
    return true;
  }

  bool SetFormat(std::span<const std::uint8_t> bitmap_info) override {
    const auto format = ParseFormat(bitmap_info);
    if (!file_ || !choice_ || muxer_ || !format) return false;
    encoder_ = PictureEncoder::Open(*choice_, *stream_, format->width, format->height);
    auto muxer = std::make_unique<AviMuxer>(*file_);
    if (!encoder_ || muxer->Stream() == nullptr || !encoder_->Describe(*muxer->Stream())) return false;
    if (!muxer->Begin()) return false;
    fitter_.emplace(format->width, format->height);
    muxer_ = std::move(muxer);
    return true;
  }

  bool Write(std::int32_t position, const AviSample& sample) override {
    if (!muxer_ || position < muxer_->NextPosition()) return false;
    const AVFrame* picture = fitter_->Fit(sample);
    if (picture == nullptr) return false;
    // A picture after one that did not get into the file cannot build on it.
    AVPacket* packet = encoder_->Encode(*picture, position, !last_written_);
    last_written_ = packet != nullptr && muxer_->Write(*packet, position);
    return last_written_;
  }

  void Release() override {
    muxer_.reset();
    encoder_.reset();
    file_.reset();
  }

 private:
  std::unique_ptr<ClipFile> file_;
  std::optional<AviStreamInfo> stream_;
  std::optional<Dialogs::Compression> choice_;
  std::optional<PictureFitter> fitter_;
  std::unique_ptr<PictureEncoder> encoder_;
  std::unique_ptr<AviMuxer> muxer_;
  bool last_written_ = false;
};

}  // namespace

std::vector<std::string> FfmpegAviFiles::Codecs() const {
  return PictureEncoder::Names();
}

std::unique_ptr<AviFile> FfmpegAviFiles::Create(const std::string& path) {
  auto file = std::make_unique<ClipFile>(path);
  if (!file->IsOpen()) return nullptr;
  return std::make_unique<FfmpegAviFile>(std::move(file));
}

std::unique_ptr<JpegClip> FfmpegAviFiles::CreateOfJpegs(const std::string& path, const JpegClip::Header& header) {
  if (path.empty()) return FfmpegJpegClip::Begin(std::make_unique<PipeFile>(STDOUT_FILENO), header);
  return FfmpegJpegClip::Begin(std::make_unique<ClipFile>(path), header);
}

}  // namespace orbelcast
