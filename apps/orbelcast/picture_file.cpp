#include "picture_file.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "platform/ascii.h"
#include "recording/picture_file.h"

namespace orbelcast {

namespace fs = std::filesystem;

PictureFormat FormatOf(const fs::path& file) {
  const std::string ending = LowerCase(file.extension().string());
  if (ending == ".png") return PictureFormat::kPng;
  if (ending == ".bmp") return PictureFormat::kBmp;
  if (ending == ".jpg" || ending == ".jpeg") return PictureFormat::kJpeg;
  return PictureFormat::kUnknown;
}

bool ReplaceFile(const fs::path& file, std::span<const std::uint8_t> bytes) {
  errno = 0;
  if (bytes.empty()) return false;
  fs::path beside = file;
  beside += "." + std::to_string(::getpid()) + ".part";
  if (!WriteFile(beside.string(), bytes)) return false;
  std::error_code error;
  fs::rename(beside, file, error);
  if (!error) return true;
  const int why = error.value();
  fs::remove(beside, error);
  errno = why;
  return false;
}

std::string WhyNotWritten() {
  return errno == 0 ? "is the disk full?" : std::strerror(errno);
}

bool WritePicture(const fs::path& file, const Surface& picture, PictureCodec& codec) {
  switch (FormatOf(file)) {
    case PictureFormat::kPng:
      return ReplaceFile(file, codec.Encode(picture));
    case PictureFormat::kBmp:
      return ReplaceFile(file, EncodeBitmap(picture));
    default:
      return false;
  }
}

}  // namespace orbelcast
