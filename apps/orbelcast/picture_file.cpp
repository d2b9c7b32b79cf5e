#include "picture_file.h"

#include <unistd.h>

#include <algorithm>
#include <cctype>

#include "recording/picture_file.h"

namespace orbelcast {

namespace fs = std::filesystem;

PictureFormat FormatOf(const fs::path& file) {
  std::string ending = file.extension().string();
  std::transform(ending.begin(), ending.end(), ending.begin(),
                 [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
  if (ending == ".png") return PictureFormat::kPng;
  if (ending == ".bmp") return PictureFormat::kBmp;
  if (ending == ".jpg" || ending == ".jpeg") return PictureFormat::kJpeg;
  return PictureFormat::kUnknown;
}

std::string WhyUnwritable(const fs::path& file) {
  std::error_code error;
  fs::path folder = file.parent_path();
  if (folder.empty()) folder = ".";
  if (!fs::is_directory(folder, error)) return "there is no folder " + folder.string();
  if (fs::is_directory(file, error)) return "it is a folder";
  if (::access(folder.c_str(), W_OK) != 0) return "the folder " + folder.string() + " may not be written to";
  return {};
}

bool ReplaceFile(const fs::path& file, std::span<const std::uint8_t> bytes) {
  if (bytes.empty()) return false;
  fs::path beside = file;
  beside += "." + std::to_string(::getpid()) + ".part";
  if (!WriteFile(beside.string(), bytes)) return false;
  std::error_code error;
  fs::rename(beside, file, error);
  if (!error) return true;
  fs::remove(beside, error);
  return false;
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
