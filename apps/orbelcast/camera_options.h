#pragma once

#include <CLI/CLI.hpp>
#include <cstdint>
#include <filesystem>
#include <initializer_list>
#include <optional>
#include <string>

#include "common/access.h"
#include "common/pixel_size.h"
#include "orbelcast/picture_file.h"

/// Options that several commands have. A wrong value is a CLI::ValidationError that says what is expected.
namespace orbelcast {

/// Declares what a command needs to reach one camera: URL, and the login.
void AddCameraOptions(CLI::App& command, std::string& url, Access& access);

/// Declares --frame-rate, whose default is the value of `frame_rate`, and --auto-reconnect.
void AddStreamOptions(CLI::App& command, std::int16_t& frame_rate, bool& auto_reconnect);

/// Declares --timeout, the time that a first picture may take. `of` says where 10 is the default.
void AddTimeOutOption(CLI::App& command, std::optional<double>& seconds, const std::string& of);

/// The error in a camera's address; empty where there is none.
std::string CheckAddress(const std::string& url);

/// Declares a size in pixels, WIDTHxHEIGHT, each side 1 to kMaxSide.
CLI::Option* AddSizeOption(CLI::App& command, PixelSize& size, const std::string& description);

/// Declares FILE, which can be written; what is there is replaced when there is something to put in its place.
void AddFileArgument(CLI::App& command, std::filesystem::path& file, const std::string& description);

/// The name of a file that can be written, in one of these formats.
std::filesystem::path ParsePictureFile(const std::string& option, const std::string& text,
                                       std::initializer_list<PictureFormat> formats);

}  // namespace orbelcast
