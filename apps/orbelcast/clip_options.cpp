#include "orbelcast/clip_options.h"

#include <algorithm>
#include <cctype>
#include <iostream>
#include <string_view>

#include "common/command_line.h"
#include "common/option_values.h"
#include "toolkit/ascii.h"

namespace orbelcast {

namespace {

/// A codec's name as it is compared: letters and digits alone, small.
std::string Plain(std::string_view name) {
  std::string plain;
  for (const unsigned char letter : name) {
    if (std::isalnum(letter) != 0) plain += LowerCase(static_cast<char>(letter));
  }
  return plain;
}

void ParseCodec(const std::string& text, ClipOptions& options) {
  constexpr std::string_view kCodecs[] = {"MPEG-4", "Motion JPEG", "HuffYUV", "Uncompressed"};
  const auto* codec = std::ranges::find_if(kCodecs, [&](std::string_view name) { return Plain(name) == Plain(text); });
  if (codec == std::end(kCodecs)) {
    throw UsageError("--codec", "give mpeg-4, motion-jpeg, huffyuv or uncompressed");
  }
  options.compression.codec = *codec;
}

}  // namespace

std::filesystem::path ParseClipFile(const std::string& option, const std::string& text) {
  if (!EqualIgnoringCase(std::filesystem::path(text).extension().string(), ".avi"))
    throw UsageError(option, "the clip's name must end in .avi");
  if (const std::string why = CheckWritable(text); !why.empty()) throw UsageError(option, why);
  return text;
}

void AddClipOptions(CommandLine& command, ClipOptions& options) {
  const std::string clip = "Clip";
  command.AddFlag("--overwrite", options.overwrite, "Replace the clip's file where there is one").Group(clip);
  command
      .AddText(
          "--codec", [&options](const std::string& text) { ParseCodec(text, options); },
          "mpeg-4 or motion-jpeg, which are small; huffyuv or uncompressed, which keep every pixel exactly (default: "
          "mpeg-4)")
      .ValueName("NAME")
      .Group(clip);
  command
      .AddNumber("--key-frames", options.compression.key_frame_every, 1, 600,
                 "Of mpeg-4: a whole picture every N, 1 to 600; players jump to those (default: 12)")
      .ValueName("N")
      .Group(clip);
  command
      .AddNumber("--data-rate", options.compression.kilobytes_per_second, 1, 100'000,
                 "Of mpeg-4 and motion-jpeg: kilobytes for a second of the clip, 1 to 100000 (default: as many as good "
                 "pictures take)")
      .ValueName("KB")
      .Group(clip);
}

bool HasContent(const std::filesystem::path& file) {
  std::error_code error;
  const auto size = std::filesystem::file_size(file, error);
  return !error && size > 0;
}

bool TellIfTaken(const ClipOptions& options) {
  std::error_code error;
  const std::string file = options.file.string();
  if (std::filesystem::is_other(options.file, error)) {
    std::cerr << "orbelcast: " << file << " is no file that a clip can be in\n";
    return true;
  }
  if (options.overwrite || !HasContent(options.file)) return false;
  std::cerr << "orbelcast: " << file << " is there already; --overwrite replaces it\n";
  return true;
}

}  // namespace orbelcast
