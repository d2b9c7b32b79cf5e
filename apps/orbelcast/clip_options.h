#pragma once

#include <filesystem>
#include <string>

#include "platform/dialogs.h"

namespace orbelcast {

class CommandLine;

/// A clip's file and how it is written.
struct ClipOptions {
  std::filesystem::path file;  ///< Empty for no clip.
  bool overwrite = false;      ///< It may take the place of a file that is there.
  Dialogs::Compression compression{.codec = "MPEG-4"};
};

/// The name of a clip's file: ends in .avi, in a folder that can be written to. Anything else is a UsageError of
/// `option`.
std::filesystem::path ParseClipFile(const std::string& option, const std::string& text);

/// Declares --overwrite, --codec, --key-frames and --data-rate on `command`.
void AddClipOptions(CommandLine& command, ClipOptions& options);

/// Whether the file holds something that a clip would replace.
bool HasContent(const std::filesystem::path& file);

/// Reports on standard error why the clip's file cannot be written. False where it can.
bool TellIfTaken(const ClipOptions& options);

}  // namespace orbelcast
