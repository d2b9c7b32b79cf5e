#pragma once

#include "adapters/ffmpeg/clip_file.h"

namespace orbelcast {

/// A clip's file that is a pipe, or is written as one: from its beginning to its end.
class PipeFile final : public ClipFile {
 public:
  /// Writes to what `descriptor` is open for, which stays open afterwards.
  explicit PipeFile(int descriptor);

  bool IsSeekable() const override { return false; }
  bool Reserve(std::int64_t) override { return true; }
  bool Write(std::span<const std::uint8_t> bytes) override;
};

}  // namespace orbelcast
