#include "adapters/ffmpeg/ffmpeg_jpeg_clip.h"

extern "C" {
#include <libavutil/opt.h>
}

#include <algorithm>
#include <cstring>

namespace orbelcast {

namespace {

/// Pictures of that long are kept together before they are written.
constexpr int kClusterMilliseconds = 1000;
/// Bytes of a picture besides its own: its block's header, and its place in the index.
constexpr std::int64_t kBytesPerBlock = 64;
/// Headers, and the file's end.
constexpr std::int64_t kBytesAround = 128 * 1024;

}  // namespace

std::unique_ptr<FfmpegJpegClip> FfmpegJpegClip::Begin(std::unique_ptr<ClipFile> file, const Header& header) {
  if (!file->IsOpen() || header.interval.count() <= 0) return nullptr;
  std::unique_ptr<FfmpegJpegClip> clip(new FfmpegJpegClip(std::move(file), header));
  const bool begun = header.container == ClipContainer::kAvi ? clip->BeginAvi() : clip->BeginMatroska();
  return begun ? std::move(clip) : nullptr;
}

FfmpegJpegClip::~FfmpegJpegClip() {
  if (open_) av_write_trailer(matroska_->Format());
}

void FfmpegJpegClip::Describe(AVStream& stream) const {
  stream.codecpar->codec_type = AVMEDIA_TYPE_VIDEO;
  stream.codecpar->codec_id = AV_CODEC_ID_MJPEG;
  stream.codecpar->width = header_.size.width;
  stream.codecpar->height = header_.size.height;
}

bool FfmpegJpegClip::BeginAvi() {
  if (!file_->IsSeekable()) return false;
  avi_ = std::make_unique<AviMuxer>(*file_);
  AVStream* const stream = avi_->Stream();
  if (stream == nullptr) return false;
  Describe(*stream);
  stream->codecpar->codec_tag = MKTAG('M', 'J', 'P', 'G');
  const int milliseconds = static_cast<int>(header_.interval.count());
  av_reduce(&stream->time_base.num, &stream->time_base.den, milliseconds, 1000, INT_MAX);
  stream->avg_frame_rate = av_inv_q(stream->time_base);
  return avi_->Begin();
}

bool FfmpegJpegClip::BeginMatroska() {
  matroska_.emplace(*file_, "matroska");
  AVStream* const stream = matroska_->Stream();
  if (stream == nullptr || !file_->Reserve(kBytesAround)) return false;
  Describe(*stream);
  stream->time_base = {1, 1000};
  av_opt_set_int(matroska_->Format()->priv_data, "cluster_time_limit", kClusterMilliseconds, 0);
  open_ = avformat_write_header(matroska_->Format(), nullptr) >= 0;
  return open_;
}

bool FfmpegJpegClip::Write(std::span<const std::uint8_t> jpeg, std::chrono::milliseconds at) {
  av_packet_unref(packet_.get());
  if (jpeg.empty() || av_new_packet(packet_.get(), static_cast<int>(jpeg.size())) < 0) return false;
  std::memcpy(packet_->data, jpeg.data(), jpeg.size());
  packet_->flags |= AV_PKT_FLAG_KEY;
  return avi_ ? WriteToAvi(at) : WriteToMatroska(at);
}

bool FfmpegJpegClip::WriteToAvi(std::chrono::milliseconds at) {
  return avi_->Write(*packet_, std::max<std::int64_t>(at / header_.interval, avi_->NextPosition()));
}

bool FfmpegJpegClip::WriteToMatroska(std::chrono::milliseconds at) {
  if (!open_ || !file_->Reserve(file_->Size() + packet_->size + (packets_ + 1) * kBytesPerBlock + kBytesAround)) {
    return false;
  }
  last_time_ = std::max<std::int64_t>(at.count(), last_time_ + 1);
  packet_->stream_index = matroska_->Stream()->index;
  packet_->pts = packet_->dts = last_time_;
  packet_->duration = header_.interval.count();
  open_ = av_write_frame(matroska_->Format(), packet_.get()) >= 0 && matroska_->Output()->error >= 0;
  ++packets_;
  return open_;
}

}  // namespace orbelcast
