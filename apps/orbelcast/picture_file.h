#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>

#include "platform/picture_codec.h"

namespace orbelcast {

/// What a picture file's name asks for, by its ending in any letter case.
enum class PictureFormat { kUnknown, kPng, kBmp, kJpeg };

PictureFormat FormatOf(const std::filesystem::path& file);

/// Makes `file` hold exactly these bytes. It is replaced as a whole: a failure, also for want of bytes, leaves the old
/// one.
bool ReplaceFile(const std::filesystem::path& file, std::span<const std::uint8_t> bytes);

/// Why the file could not be written, for people: to be asked for right after ReplaceFile or WritePicture has failed.
std::string WhyNotWritten();

/// Writes `picture` as a PNG or BMP file, by the file's ending. False where the picture is empty, or the file cannot be
/// written or has another ending.
bool WritePicture(const std::filesystem::path& file, const Surface& picture, PictureCodec& codec);

}  // namespace orbelcast
