#pragma once

#include <chrono>
#include <cstdint>
#include <span>

#include "platform/size.h"

namespace orbelcast {

/// The form of a clip's file. An AVI file needs a place that can be gone back to; Matroska can go through a pipe.
enum class ClipContainer { kAvi, kMatroska };

/// A clip of JPEG pictures as a camera sent them: none is decoded, or compressed again. Destroying it finishes and
/// closes the file; the pictures written stay.
class JpegClip {
 public:
  /// The content of the clip's header.
  struct Header {
    ClipContainer container = ClipContainer::kAvi;
    Size size{};  ///< Of the first picture. A later one may have another: players scale it.
    /// Of AVI, whose pictures have one distance: how long a picture is shown.
    std::chrono::milliseconds interval{100};
  };

  virtual ~JpegClip() = default;

  /// Writes a picture that came `at` after the clip's beginning; times only grow. In AVI its place is the interval of
  /// that time, or the next one that is free, and those without one are empty. False where it cannot be written: then
  /// nothing of it is in the file, which ends well all the same.
  virtual bool Write(std::span<const std::uint8_t> jpeg, std::chrono::milliseconds at) = 0;
};

}  // namespace orbelcast
