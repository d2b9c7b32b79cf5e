#include "orbelcast/picture_file.h"

#include <iostream>

#include "common/shown_text.h"
#include "common/standard_stream.h"
#include "recording/picture_file.h"
#include "toolkit/ascii.h"

namespace orbelcast {

namespace fs = std::filesystem;

PictureFormat FormatOf(const fs::path& file) {
  if (IsStandardStream(file)) return PictureFormat::kPng;
  const std::string ending = LowerCase(file.extension().string());
  if (ending == ".png") return PictureFormat::kPng;
  if (ending == ".bmp") return PictureFormat::kBmp;
  if (ending == ".jpg" || ending == ".jpeg") return PictureFormat::kJpeg;
  return PictureFormat::kUnknown;
}

std::string WritePicture(const fs::path& file, std::span<const std::uint8_t> bytes) {
  return bytes.empty() ? "there is no picture" : WriteOutput(file, bytes);
}

std::string WritePicture(const fs::path& file, const Surface& picture, PictureCodec& codec) {
  return WritePicture(file, FormatOf(file) == PictureFormat::kPng ? codec.Encode(picture) : EncodeBitmap(picture));
}

Problem WhyUnwritten(const fs::path& file, const std::string& why) {
  return {.kind = "unwritable", .text = "cannot write " + Shown(file.string()) + ": " + Shown(why)};
}

bool TellIfUnwritten(const fs::path& file, const std::string& why) {
  if (why.empty()) return false;
  Tell(WhyUnwritten(file, why), std::cerr);
  return true;
}

}  // namespace orbelcast
