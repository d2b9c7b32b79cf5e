#pragma once

#include <cstdint>

#include "adapters/ffmpeg/av_pointers.h"
#include "adapters/ffmpeg/clip_file.h"
#include "adapters/ffmpeg/container.h"

namespace orbelcast {

/// Puts packets into an AVI file, each on the disk when it is written.
///
/// The file's index comes at its end. A process that is killed leaves a file without one, which players read from the
/// front; a disk that gets full leaves a whole one, because the index's room was reserved. Past 1 GiB the file goes on
/// in further parts, each with an index of its own (OpenDML).
class AviMuxer {
 public:
  /// `file` outlives the muxer.
  explicit AviMuxer(ClipFile& file);
  /// Finishes the file.
  ~AviMuxer();
  AviMuxer(const AviMuxer&) = delete;
  AviMuxer& operator=(const AviMuxer&) = delete;

  /// The one stream, to be described before Begin; null where there is none.
  AVStream* Stream() const { return container_.Stream(); }
  /// Writes the header.
  bool Begin();
  /// The first position that is not written yet.
  std::int64_t NextPosition() const { return next_position_; }
  /// Writes one packet at that position or a later one, and empty ones at those between. False where there is no
  /// room left, or it cannot be written: nothing of it is in the file then.
  bool Write(AVPacket& packet, std::int64_t position);

 private:
  bool Reserve(std::int64_t bytes, std::int64_t packets);
  bool WriteEmpty(std::int64_t position);
  bool WriteOne(AVPacket& packet, std::int64_t position);
  void NoteLength();

  ClipFile& file_;
  Container container_;
  av::Owned<AVPacket> empty_;
  std::int64_t next_position_ = 0;
  bool begun_ = false;
  bool broken_ = false;  ///< A write has failed: the file is not changed any more.
};

}  // namespace orbelcast
