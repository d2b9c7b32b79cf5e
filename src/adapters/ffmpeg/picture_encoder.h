#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "adapters/ffmpeg/av_pointers.h"
#include "platform/avi_file.h"

namespace orbelcast {

/// Compresses a clip's pictures one by one: each is complete at once, so that it can be written to the disk.
class PictureEncoder {
 public:
  /// The names of the compressions that this library offers here, the one that keeps every bit first.
  static std::vector<std::string> Names();

  /// Ready for pictures of that size; null where the compression is not offered, or not for this size.
  static std::unique_ptr<PictureEncoder> Open(const Dialogs::Compression& choice, const AviStreamInfo& stream,
                                              int width, int height);

  /// Describes the stream to the muxer.
  bool Describe(AVStream& stream) const;

  /// Compresses a picture of the clip's size, rows from the top, 24 bits a pixel, blue first; as a key frame where the
  /// one before is not in the clip. Positions grow. Null on failure; valid until the next call.
  AVPacket* Encode(const AVFrame& picture, std::int64_t position, bool key_frame);

 private:
  struct Offer;
  PictureEncoder(const Offer& offer, av::Owned<AVCodecContext> codec);
  static std::span<const Offer> Offers();
  static const Offer* Find(const std::string& name);
  bool PrepareConversion();
  void Convert(const AVFrame& picture);

  const Offer& offer_;
  av::Owned<AVCodecContext> codec_;
  av::Owned<SwsContext> converter_;  ///< None where the pixels stay as they are.
  av::Owned<AVFrame> frame_;         ///< The picture as the compression wants it.
  av::Owned<AVPacket> packet_;
};

}  // namespace orbelcast
