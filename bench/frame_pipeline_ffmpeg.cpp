#include "frame_pipelines.h"

#ifdef ORBELCAST_BENCH_FFMPEG

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavutil/log.h>
#include <libswscale/swscale.h>
}

#include <array>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace orbelcast::bench {

namespace {

constexpr int kThumbnailSide = 100;

/// The mjpeg decoder on one thread, and swscale with its bilinear filter for the area and for a grey thumbnail.
class Ffmpeg final : public Pipeline {
 public:
  Ffmpeg(int width, int height) : surface_(width, height) {
    av_log_set_level(AV_LOG_ERROR);
    const AVCodec* codec = avcodec_find_decoder(AV_CODEC_ID_MJPEG);
    context_ = avcodec_alloc_context3(codec);
    context_->thread_count = 1;
    if (avcodec_open2(context_, codec, nullptr) < 0) std::abort();
    for (auto* plane : {&grey_, &last_}) plane->resize(kThumbnailSide * kThumbnailSide);
  }
  ~Ffmpeg() override {
    sws_freeContext(to_area_);
    sws_freeContext(to_thumbnail_);
    av_frame_free(&picture_);
    av_packet_free(&packet_);
    avcodec_free_context(&context_);
  }

  void Show(const FrameBytes& frame) override {
    // The decoder reads past the end; its callers keep their packets padded.
    if (padded_.size() < frame.Size() + AV_INPUT_BUFFER_PADDING_SIZE) {
      padded_.resize(frame.Size() + AV_INPUT_BUFFER_PADDING_SIZE);
    }
    std::memcpy(padded_.data(), frame.Bytes().data(), frame.Size());
    packet_->data = padded_.data();
    packet_->size = static_cast<int>(frame.Size());
    if (avcodec_send_packet(context_, packet_) < 0 || avcodec_receive_frame(context_, picture_) < 0) std::abort();
    Scale(to_area_, surface_.Width(), surface_.Height(), AV_PIX_FMT_BGRA,
          reinterpret_cast<std::uint8_t*>(surface_.MutablePixels().data()), surface_.Width() * 4);
    Scale(to_thumbnail_, kThumbnailSide, kThumbnailSide, AV_PIX_FMT_GRAY8, grey_.data(), kThumbnailSide);
    int moved = 0;
    for (std::size_t i = 0; i < grey_.size(); ++i) moved += std::abs(grey_[i] - last_[i]) > 20 ? 1 : 0;
    moved_ = moved;
    std::swap(grey_, last_);
  }
  Surface Shown() override { return surface_; }

 private:
  void Scale(SwsContext*& context, int width, int height, AVPixelFormat format, std::uint8_t* to, int stride) {
    context =
        sws_getCachedContext(context, picture_->width, picture_->height, static_cast<AVPixelFormat>(picture_->format),
                             width, height, format, SWS_BILINEAR, nullptr, nullptr, nullptr);
    std::array<std::uint8_t*, 4> planes{to};
    std::array<int, 4> strides{stride};
    sws_scale(context, picture_->data, picture_->linesize, 0, picture_->height, planes.data(), strides.data());
  }

  AVCodecContext* context_ = nullptr;
  AVPacket* packet_ = av_packet_alloc();
  AVFrame* picture_ = av_frame_alloc();
  SwsContext* to_area_ = nullptr;
  SwsContext* to_thumbnail_ = nullptr;
  std::vector<std::uint8_t> padded_, grey_, last_;
  Surface surface_;
  volatile int moved_ = 0;
};

}  // namespace

std::unique_ptr<Pipeline> FfmpegPipeline(int width, int height) {
  return std::make_unique<Ffmpeg>(width, height);
}

}  // namespace orbelcast::bench

#else

std::unique_ptr<orbelcast::bench::Pipeline> orbelcast::bench::FfmpegPipeline(int, int) {
  return nullptr;
}

#endif
