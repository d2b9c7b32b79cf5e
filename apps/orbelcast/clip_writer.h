#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "orbelcast/clip_options.h"
#include "platform/platform.h"
#include "recording/picture_file.h"

namespace orbelcast {

/// The source of a clip's pictures.
struct ClipSource {
  std::function<ShownPicture()> take_picture;  ///< The picture of the moment.
  std::function<int()> interval;               ///< Milliseconds from one to the next, asked for at the first one.
};

/// The way in which a clip's pictures get into its file.
class ClipWriter {
 public:
  virtual ~ClipWriter() = default;

  /// Begins the file; why it could not be, for people, empty where it was.
  virtual std::string Begin(const std::filesystem::path& place) = 0;
  virtual bool IsOpen() const = 0;
  /// Adds the picture of this moment. False where it cannot be written.
  virtual bool Add() = 0;
  virtual void Finish() = 0;
  /// How long the clip plays so far.
  virtual double Seconds() const = 0;
};

/// The writer that the options ask for: one that compresses pictures, or one that copies a camera's own.
std::unique_ptr<ClipWriter> MakeClipWriter(Platform& services, const ClipOptions& options, ClipSource source);

}  // namespace orbelcast
