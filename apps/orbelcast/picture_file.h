#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>

#include "orbelcast/problem.h"
#include "platform/picture_codec.h"
#include "toolkit/surface.h"

namespace orbelcast {

/// The format that a picture file's name asks for, by its ending in any letter case; on standard output, PNG.
enum class PictureFormat { kUnknown, kPng, kBmp, kJpeg };

PictureFormat FormatOf(const std::filesystem::path& file);

/// Writes a picture's bytes where `file` leads, as WriteOutput does; none are a problem of their own.
std::string WritePicture(const std::filesystem::path& file, std::span<const std::uint8_t> bytes);

/// The problem that `file` could not be written, and `why`.
Problem WhyUnwritten(const std::filesystem::path& file, const std::string& why);

/// Reports on standard error that `file` could not be written, and `why`. False where `why` is empty.
bool TellIfUnwritten(const std::filesystem::path& file, const std::string& why);

/// Writes `picture` as a PNG or BMP file, by the file's ending. The error, for people; empty where there is none.
std::string WritePicture(const std::filesystem::path& file, const Surface& picture, PictureCodec& codec);

}  // namespace orbelcast
