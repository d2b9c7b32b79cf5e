#include "adapters/ffmpeg/avi_muxer.h"

#include <cerrno>
#include <span>

namespace orbelcast {

namespace {

constexpr std::size_t kBufferBytes = 64 * 1024;
/// Bytes of a packet besides its own: its chunk's header and fill byte, and its place in both kinds of index.
constexpr std::int64_t kBytesPerPacket = 9 + 16 + 8;
/// Headers, the list of indices, the fill up to the next part.
constexpr std::int64_t kBytesBeside = 128 * 1024;
/// The longest run of empty frames that can be meant: days at any frame rate.
constexpr std::int64_t kLongestGap = 1 << 24;
/// Offsets of the clip's and the stream's number of frames in the header: an AVI file's first bytes always have this
/// order.
constexpr std::int64_t kFileLengthAt = 48;
constexpr std::int64_t kStreamLengthAt = 140;

}  // namespace

AviMuxer::AviMuxer(ClipFile& file) : file_(file), empty_(av_packet_alloc()) {
  auto* buffer = static_cast<std::uint8_t*>(av_malloc(kBufferBytes));
  if (buffer == nullptr) return;
  output_.reset(avio_alloc_context(buffer, kBufferBytes, 1, &file_, nullptr, WriteBytes, SeekTo));
  if (!output_) {
    av_free(buffer);
    return;
  }
  AVFormatContext* format = nullptr;
  if (avformat_alloc_output_context2(&format, nullptr, "avi", nullptr) < 0) return;
  format_.reset(format);
  format_->pb = output_.get();
  format_->flags |= AVFMT_FLAG_FLUSH_PACKETS;
  // The file names no program, and the same pictures give the same bytes.
  format_->flags |= AVFMT_FLAG_BITEXACT;
  if (empty_) stream_ = avformat_new_stream(format_.get(), nullptr);
}

AviMuxer::~AviMuxer() {
  if (begun_ && !broken_) av_write_trailer(format_.get());
}

bool AviMuxer::Begin() {
  if (stream_ == nullptr || begun_ || broken_) return false;
  const AVRational time_base = stream_->time_base;
  file_.CutOff(0);
  file_.Seek(0);
  if (!file_.Reserve(kBytesBeside)) return false;
  begun_ = avformat_write_header(format_.get(), nullptr) >= 0;
  avio_flush(output_.get());
  broken_ = !begun_ || output_->error < 0 || av_cmp_q(time_base, stream_->time_base) != 0;
  return !broken_;
}

bool AviMuxer::Write(AVPacket& packet, std::int64_t position) {
  const std::int64_t gap = position - next_position_;
  if (!begun_ || broken_ || gap < 0 || gap > kLongestGap || !Reserve(packet.size, gap + 1)) return false;
  while (next_position_ < position) {
    if (!WriteEmpty(next_position_)) return false;
  }
  return WriteOne(packet, position);
}

bool AviMuxer::Reserve(std::int64_t bytes, std::int64_t packets) {
  return file_.Reserve(file_.Size() + bytes + (next_position_ + packets) * kBytesPerPacket + kBytesBeside);
}

bool AviMuxer::WriteEmpty(std::int64_t position) {
  av_packet_unref(empty_.get());
  return WriteOne(*empty_, position);
}

bool AviMuxer::WriteOne(AVPacket& packet, std::int64_t position) {
  const std::int64_t size_before = file_.Size();
  packet.stream_index = stream_->index;
  packet.pts = packet.dts = position;
  packet.duration = 1;
  if (av_write_frame(format_.get(), &packet) < 0 || output_->error < 0) {
    broken_ = true;
    file_.CutOff(size_before);
    return false;
  }
  next_position_ = position + 1;
  NoteLength();
  return true;
}

// The muxer itself fills these in at the end; a file that never came to its end tells how much there is of it.
void AviMuxer::NoteLength() {
  const auto length = static_cast<std::uint32_t>(next_position_);
  const std::uint8_t bytes[] = {static_cast<std::uint8_t>(length), static_cast<std::uint8_t>(length >> 8),
                                static_cast<std::uint8_t>(length >> 16), static_cast<std::uint8_t>(length >> 24)};
  const std::int64_t end = file_.Place();
  for (const std::int64_t place : {kFileLengthAt, kStreamLengthAt}) {
    file_.Seek(place);
    file_.Write(bytes);
  }
  file_.Seek(end);
}

int AviMuxer::WriteBytes(void* file, std::uint8_t* bytes, int size) {
  const bool written = static_cast<ClipFile*>(file)->Write(std::span(bytes, static_cast<std::size_t>(size)));
  return written ? size : AVERROR(errno);
}

std::int64_t AviMuxer::SeekTo(void* opaque, std::int64_t offset, int whence) {
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
