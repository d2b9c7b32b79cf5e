#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "orbelcast/problem.h"
#include "platform/dialogs.h"
#include "platform/jpeg_clip.h"

namespace orbelcast {

class CommandLine;

/// A clip's file and how it is written.
struct ClipOptions {
  std::filesystem::path file;  ///< Empty for no clip.
  bool overwrite = false;      ///< It may take the place of a file that is there.
  bool copies = false;         ///< The pictures stay as they were received; otherwise they are compressed:
  Dialogs::Compression compression{.codec = "MPEG-4"};
};

/// The container of a clip's file, by its name: standard output is Matroska.
ClipContainer ContainerOf(const std::filesystem::path& file);

/// The pictures that are recorded: those that a camera sent as JPEGs, which can be copied, or others.
enum class ClipPictures { kCameras, kDrawn };

/// The name of a clip's file: ends in .avi (of a camera's also in .mkv, or it is "-"), in a folder that can be written
/// to. Anything else is a UsageError of `option`.
std::filesystem::path ParseClipFile(const std::string& option, const std::string& text, ClipPictures pictures);

/// Declares --overwrite, --codec, --key-frames and --data-rate on `command`.
void AddClipOptions(CommandLine& command, ClipOptions& options, ClipPictures pictures);

/// Whether the file holds something that a clip would replace.
bool HasContent(const std::filesystem::path& file);

/// Why the clip's file cannot be written; nothing where it can.
std::optional<Problem> WhyTaken(const ClipOptions& options);

}  // namespace orbelcast
