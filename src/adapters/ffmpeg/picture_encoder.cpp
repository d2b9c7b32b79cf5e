#include "adapters/ffmpeg/picture_encoder.h"

#include <algorithm>
#include <cstring>

namespace orbelcast {

/// A compression as it is offered.
struct PictureEncoder::Offer {
  const char* name;
  AVCodecID codec;
  /// The code by which players know it; 0 is a bitmap's pixels as they are.
  std::uint32_t tag;
  AVPixelFormat pixels;
  bool loses_some;  ///< Pictures come back nearly, not exactly: there is a quality, or a data rate, to choose.
};

namespace {

/// The quantizer where no data rate is asked for, of 1 (best) to 31: hard to tell from the picture that came in.
constexpr int kQuantizer = 3;
/// The codecs' own longest distance between key frames.
constexpr int kMostFramesAKey = 600;
constexpr std::int64_t kMostKilobytes = 250'000;  ///< A second: two gigabits, beyond any use.

// Marks a stream of bitmaps whose rows come from the bottom, as bitmaps in a clip have them.
constexpr char kBottomUp[] = "BottomUp";

void ChooseQuality(AVCodecContext& codec, const Dialogs::Compression& choice) {
  if (choice.key_frame_every > 0) codec.gop_size = std::min(choice.key_frame_every, kMostFramesAKey);
  if (choice.kilobytes_per_second > 0) {
    codec.bit_rate = std::min<std::int64_t>(choice.kilobytes_per_second, kMostKilobytes) * 1024 * 8;
    // How far the rate may stray: by a second's worth, or by a picture where one takes longer.
    const double pictures = std::max(1.0, av_q2d(codec.time_base));
    codec.bit_rate_tolerance = static_cast<int>(std::min(static_cast<double>(codec.bit_rate) * pictures, 2e9));
  } else {
    codec.flags |= AV_CODEC_FLAG_QSCALE;
    codec.global_quality = kQuantizer * FF_QP2LAMBDA;
  }
}

}  // namespace

std::span<const PictureEncoder::Offer> PictureEncoder::Offers() {
  static constexpr Offer kOffers[] = {
      {"Uncompressed", AV_CODEC_ID_RAWVIDEO, 0, AV_PIX_FMT_BGR24, false},
      {"Motion JPEG", AV_CODEC_ID_MJPEG, MKTAG('M', 'J', 'P', 'G'), AV_PIX_FMT_YUVJ420P, true},
      {"MPEG-4", AV_CODEC_ID_MPEG4, MKTAG('X', 'V', 'I', 'D'), AV_PIX_FMT_YUV420P, true},
      // Of red, green and blue: nothing of the picture is lost.
      {"HuffYUV", AV_CODEC_ID_HUFFYUV, MKTAG('H', 'F', 'Y', 'U'), AV_PIX_FMT_RGB24, false},
  };
  return kOffers;
}

const PictureEncoder::Offer* PictureEncoder::Find(const std::string& name) {
  for (const Offer& offer : Offers()) {
    if (offer.name == name && avcodec_find_encoder(offer.codec) != nullptr) return &offer;
  }
  return nullptr;
}

std::vector<std::string> PictureEncoder::Names() {
  std::vector<std::string> names;
  for (const Offer& offer : Offers()) {
    if (Find(offer.name) != nullptr) names.emplace_back(offer.name);
  }
  return names;
}

std::unique_ptr<PictureEncoder> PictureEncoder::Open(const Dialogs::Compression& choice, const AviStreamInfo& stream,
                                                     int width, int height) {
  const Offer* offer = Find(choice.codec);
  if (offer == nullptr) return nullptr;
  const AVCodec* library_codec = avcodec_find_encoder(offer->codec);
  av::Owned<AVCodecContext> codec(avcodec_alloc_context3(library_codec));
  if (!codec) return nullptr;
  codec->width = width;
  codec->height = height;
  codec->pix_fmt = offer->pixels;
  codec->codec_tag = offer->tag;
  codec->time_base = {stream.scale, stream.rate};
  codec->thread_count = 1;  // Several would keep pictures back.
  codec->max_b_frames = 0;
  // Its informational messages do not belong on a user's terminal; warnings do.
  codec->log_level_offset = AV_LOG_VERBOSE - AV_LOG_INFO;
  if (offer->loses_some) ChooseQuality(*codec, choice);
  if (avcodec_open2(codec.get(), library_codec, nullptr) < 0) return nullptr;

  std::unique_ptr<PictureEncoder> encoder(new PictureEncoder(*offer, std::move(codec)));
  if (!encoder->frame_ || !encoder->packet_ || !encoder->PrepareConversion()) return nullptr;
  return encoder;
}

PictureEncoder::PictureEncoder(const Offer& offer, av::Owned<AVCodecContext> codec)
    : offer_(offer),
      codec_(std::move(codec)),
      frame_(av::MakeFrame(codec_->width, codec_->height, offer.pixels)),
      packet_(av_packet_alloc()) {}

bool PictureEncoder::PrepareConversion() {
  if (offer_.pixels == AV_PIX_FMT_BGR24) return true;
  // To the scaler a full range of values is a setting, not a pixel format of its own.
  const bool full_range = offer_.pixels == AV_PIX_FMT_YUVJ420P;
  const AVPixelFormat pixels = full_range ? AV_PIX_FMT_YUV420P : offer_.pixels;
  constexpr int kExactly = SWS_BICUBIC | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INP;
  converter_.reset(sws_getContext(codec_->width, codec_->height, AV_PIX_FMT_BGR24, codec_->width, codec_->height,
                                  pixels, kExactly, nullptr, nullptr, nullptr));
  if (!converter_) return false;
  const int* table = sws_getCoefficients(SWS_CS_DEFAULT);
  sws_setColorspaceDetails(converter_.get(), table, 1, table, full_range ? 1 : 0, 0, 1 << 16, 1 << 16);
  return true;
}

bool PictureEncoder::Describe(AVStream& stream) const {
  if (avcodec_parameters_from_context(stream.codecpar, codec_.get()) < 0) return false;
  stream.time_base = codec_->time_base;
  stream.avg_frame_rate = av_inv_q(codec_->time_base);
  if (offer_.tag != 0) return true;
  stream.codecpar->bits_per_coded_sample = 24;
  stream.codecpar->extradata = static_cast<std::uint8_t*>(av_mallocz(sizeof kBottomUp + AV_INPUT_BUFFER_PADDING_SIZE));
  if (stream.codecpar->extradata == nullptr) return false;
  std::memcpy(stream.codecpar->extradata, kBottomUp, sizeof kBottomUp);
  stream.codecpar->extradata_size = sizeof kBottomUp;
  return true;
}

AVPacket* PictureEncoder::Encode(const AVFrame& picture, std::int64_t position, bool key_frame) {
  // The codec may still share the last picture's memory.
  if (av_frame_make_writable(frame_.get()) < 0) return nullptr;
  Convert(picture);
  frame_->pts = position;
  frame_->quality = codec_->global_quality;
  frame_->pict_type = key_frame ? AV_PICTURE_TYPE_I : AV_PICTURE_TYPE_NONE;
  av_packet_unref(packet_.get());
  if (avcodec_send_frame(codec_.get(), frame_.get()) < 0) return nullptr;
  if (avcodec_receive_packet(codec_.get(), packet_.get()) < 0) return nullptr;
  return packet_.get();
}

void PictureEncoder::Convert(const AVFrame& picture) {
  if (converter_) {
    sws_scale(converter_.get(), picture.data, picture.linesize, 0, picture.height, frame_->data, frame_->linesize);
    return;
  }
  for (std::ptrdiff_t row = 0; row < picture.height; ++row) {
    std::memcpy(frame_->data[0] + (picture.height - 1 - row) * frame_->linesize[0],
                picture.data[0] + row * picture.linesize[0], static_cast<std::size_t>(picture.width) * 3);
  }
}

}  // namespace orbelcast
