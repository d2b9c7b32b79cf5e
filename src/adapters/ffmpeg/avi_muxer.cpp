#include "adapters/ffmpeg/avi_muxer.h"

namespace orbelcast {

namespace {

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

AviMuxer::AviMuxer(ClipFile& file) : file_(file), container_(file, "avi"), empty_(av_packet_alloc()) {}

AviMuxer::~AviMuxer() {
  if (begun_ && !broken_) av_write_trailer(container_.Format());
}

bool AviMuxer::Begin() {
  AVStream* const stream = Stream();
  if (stream == nullptr || !empty_ || begun_ || broken_) return false;
  const AVRational time_base = stream->time_base;
  file_.CutOff(0);
  file_.Seek(0);
  if (!file_.Reserve(kBytesBeside)) return false;
  begun_ = avformat_write_header(container_.Format(), nullptr) >= 0;
  avio_flush(container_.Output());
  broken_ = !begun_ || container_.Output()->error < 0 || av_cmp_q(time_base, stream->time_base) != 0;
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
  packet.stream_index = Stream()->index;
  packet.pts = packet.dts = position;
  packet.duration = 1;
  if (av_write_frame(container_.Format(), &packet) < 0 || container_.Output()->error < 0) {
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

}  // namespace orbelcast
