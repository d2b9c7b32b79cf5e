#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <initializer_list>
#include <optional>
#include <string>

#include "common/command_line.h"
#include "common/pixel_size.h"
#include "orbelcast/picture_file.h"
#include "stream/stream_options.h"

/// Options that several commands have. A wrong value is a UsageError that says what is expected.
namespace orbelcast {

/// Declares what a command needs to reach one camera: CAMERA, --device, the login; and the messages.
void AddCameraOptions(CommandLine& command, StreamOptions& stream);

/// Declares --frame-rate, whose default is the value of `frame_rate`, and --auto-reconnect.
void AddStreamOptions(CommandLine& command, std::int16_t& frame_rate, bool& auto_reconnect);

/// Declares --timeout, the time that a first picture may take. `default_text` says how long where not told.
Option AddTimeOutOption(CommandLine& command, std::optional<double>& seconds, const std::string& default_text);

/// Whether a text that CheckCamera takes is a camera server, not a picture's address.
bool NamesServer(const std::string& text);

/// The error in a camera server or a camera's address; empty where there is none.
std::string CheckCamera(const std::string& text);

/// The error in a camera's address; empty where there is none.
std::string CheckAddress(const std::string& url);

/// Declares a size in pixels, WIDTHxHEIGHT, each side 1 to kMaxSide.
Option AddSizeOption(CommandLine& command, Size& size, const std::string& description);

/// Declares FILE, which is also -o FILE, and required. `take` is given it, and throws UsageError.
void AddFileArgument(CommandLine& command, const std::function<void(const std::string&)>& take,
                     const std::string& help);

/// The same for the `what` of a server, as it was sent, with what the help ends with. The file can be written; what is
/// there is replaced when there is something to put in its place.
void AddFileArgument(CommandLine& command, std::filesystem::path& file, const std::string& what);

/// The name of a file that can be written, in one of these formats.
std::filesystem::path ParsePictureFile(const std::string& option, const std::string& text,
                                       std::initializer_list<PictureFormat> formats);

}  // namespace orbelcast
