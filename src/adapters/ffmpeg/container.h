#pragma once

#include <cstdint>

#include "adapters/ffmpeg/av_pointers.h"
#include "adapters/ffmpeg/clip_file.h"

namespace orbelcast {

/// A file's container with one stream, as the library writes it to a clip's file: each write goes there at once.
class Container {
 public:
  /// `format` is the library's short name of it. `file` outlives this.
  Container(ClipFile& file, const char* format);

  AVFormatContext* Format() const { return format_.get(); }
  AVIOContext* Output() const { return output_.get(); }
  /// Null where the container could not be made.
  AVStream* Stream() const { return stream_; }

 private:
  static int WriteBytes(void* file, std::uint8_t* bytes, int size);
  static std::int64_t SeekTo(void* file, std::int64_t offset, int whence);

  av::Owned<AVIOContext> output_;
  av::Owned<AVFormatContext> format_;
  AVStream* stream_ = nullptr;
};

}  // namespace orbelcast
