#pragma once

#include <cstdint>
#include <filesystem>
#include <initializer_list>
#include <optional>
#include <string>

#include "common/access.h"
#include "common/command_line.h"
#include "common/pixel_size.h"
#include "orbelcast/picture_file.h"

/// Options that several commands have. A wrong value is a UsageError that says what is expected.
namespace orbelcast {

/// Declares what a command needs to reach one camera: URL, and the login.
void AddCameraOptions(CommandLine& command, std::string& url, Access& access);

/// Declares --frame-rate, whose default is the value of `frame_rate`, and --auto-reconnect.
void AddStreamOptions(CommandLine& command, std::int16_t& frame_rate, bool& auto_reconnect);

/// Declares --timeout, the time that a first picture may take. `of` says where 10 is the default.
void AddTimeOutOption(CommandLine& command, std::optional<double>& seconds, const std::string& of);

/// The error in a camera's address; empty where there is none.
std::string CheckAddress(const std::string& url);

/// Declares a size in pixels, WIDTHxHEIGHT, each side 1 to kMaxSide.
Option AddSizeOption(CommandLine& command, Size& size, const std::string& description);

/// Declares FILE, which can be written; what is there is replaced when there is something to put in its place.
void AddFileArgument(CommandLine& command, std::filesystem::path& file, const std::string& description);

/// The name of a file that can be written, in one of these formats.
std::filesystem::path ParsePictureFile(const std::string& option, const std::string& text,
                                       std::initializer_list<PictureFormat> formats);

}  // namespace orbelcast
