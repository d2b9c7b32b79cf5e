#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libswscale/swscale.h>
}

#include <memory>

/// Owning pointers to FFmpeg's objects.
namespace orbelcast::av {

struct Free {
  void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
  void operator()(AVFormatContext* context) const { avformat_free_context(context); }
  void operator()(AVFrame* frame) const { av_frame_free(&frame); }
  void operator()(AVPacket* packet) const { av_packet_free(&packet); }
  void operator()(SwsContext* context) const { sws_freeContext(context); }
  void operator()(AVIOContext* context) const {
    av_freep(&context->buffer);
    avio_context_free(&context);
  }
};

template <typename T>
using Owned = std::unique_ptr<T, Free>;

/// A picture of that size and format with memory of its own, padded as the library's vector code needs it; null where
/// there is none to be had.
inline Owned<AVFrame> MakeFrame(int width, int height, AVPixelFormat format) {
  Owned<AVFrame> frame(av_frame_alloc());
  if (!frame) return nullptr;
  frame->width = width;
  frame->height = height;
  frame->format = format;
  if (av_frame_get_buffer(frame.get(), 0) < 0) return nullptr;
  return frame;
}

}  // namespace orbelcast::av
