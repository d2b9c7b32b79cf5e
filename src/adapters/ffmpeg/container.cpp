#include "adapters/ffmpeg/container.h"

#include <cerrno>
#include <span>

namespace orbelcast {

namespace {

constexpr std::size_t kBufferBytes = 64 * 1024;

}  // namespace

Container::Container(ClipFile& file, const char* format) {
  auto* buffer = static_cast<std::uint8_t*>(av_malloc(kBufferBytes));
  if (buffer == nullptr) return;
  output_.reset(
      avio_alloc_context(buffer, kBufferBytes, 1, &file, nullptr, WriteBytes, file.IsSeekable() ? SeekTo : nullptr));
  if (!output_) {
    av_free(buffer);
    return;
  }
  AVFormatContext* context = nullptr;
  if (avformat_alloc_output_context2(&context, nullptr, format, nullptr) < 0) return;
  format_.reset(context);
  format_->pb = output_.get();
  format_->flags |= AVFMT_FLAG_FLUSH_PACKETS;
  // The file names no program, and the same pictures give the same bytes.
  format_->flags |= AVFMT_FLAG_BITEXACT;
  stream_ = avformat_new_stream(format_.get(), nullptr);
}

int Container::WriteBytes(void* file, std::uint8_t* bytes, int size) {
  const bool written = static_cast<ClipFile*>(file)->Write(std::span(bytes, static_cast<std::size_t>(size)));
  return written ? size : AVERROR(errno);
}

std::int64_t Container::SeekTo(void* opaque, std::int64_t offset, int whence) {
  auto& file = *static_cast<ClipFile*>(opaque);
  switch (whence) {
    case AVSEEK_SIZE:
      return file.Size();
    case SEEK_SET:
      file.Seek(offset);
      break;
    case SEEK_CUR:
      file.Seek(file.Place() + offset);
      break;
    case SEEK_END:
      file.Seek(file.Size() + offset);
      break;
    default:
      return AVERROR(EINVAL);
  }
  return file.Place();
}

}  // namespace orbelcast
