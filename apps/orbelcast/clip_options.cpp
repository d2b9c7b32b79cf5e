#include "orbelcast/clip_options.h"

#include <algorithm>
#include <cctype>
#include <string_view>

#include "common/command_line.h"
#include "common/option_values.h"
#include "common/standard_stream.h"
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

constexpr const char* kCopy = "copy";

void ParseCodec(const std::string& text, ClipOptions& options, ClipPictures pictures) {
  if (pictures == ClipPictures::kCameras && Plain(text) == kCopy) {
    options.copies = true;
    return;
  }
  constexpr std::string_view kCodecs[] = {"MPEG-4", "Motion JPEG", "HuffYUV", "Uncompressed"};
  const auto* codec = std::ranges::find_if(kCodecs, [&](std::string_view name) { return Plain(name) == Plain(text); });
  if (codec == std::end(kCodecs)) {
    throw UsageError("--codec", pictures == ClipPictures::kCameras
                                    ? "give copy, mpeg-4, motion-jpeg, huffyuv or uncompressed"
                                    : "give mpeg-4, motion-jpeg, huffyuv or uncompressed");
  }
  options.compression.codec = *codec;
}

}  // namespace

ClipContainer ContainerOf(const std::filesystem::path& file) {
  return EqualIgnoringCase(file.extension().string(), ".avi") ? ClipContainer::kAvi : ClipContainer::kMatroska;
}

std::filesystem::path ParseClipFile(const std::string& option, const std::string& text, ClipPictures pictures) {
  std::filesystem::path file(text);
  const bool avi = ContainerOf(file) == ClipContainer::kAvi;
  const bool matroska = EqualIgnoringCase(file.extension().string(), ".mkv") || IsStandardStream(file);
  if (pictures == ClipPictures::kDrawn && !avi) throw UsageError(option, "the clip's name must end in .avi");
  if (!avi && !matroska) throw UsageError(option, "the clip's name must end in .avi or .mkv, or be -");
  if (const std::string why = CheckWritable(text); !why.empty()) throw UsageError(option, why);
  return file;
}

void AddClipOptions(CommandLine& command, ClipOptions& options, ClipPictures pictures) {
  const std::string clip = "Clip";
  const bool copied = pictures == ClipPictures::kCameras;
  command.AddFlag("--overwrite", options.overwrite, "Replace the clip's file where there is one").Group(clip);
  const Option codec =
      command
          .AddText(
              "-c,--codec", [&options, pictures](const std::string& text) { ParseCodec(text, options, pictures); },
              std::string(copied ? "copy, the camera's own JPEGs as they came, which costs next to nothing; " : "") +
                  "mpeg-4 or motion-jpeg, which are small; huffyuv or uncompressed, which keep every pixel exactly "
                  "(default: mpeg-4" +
                  (copied ? "; of .mkv and - copy, the only one there)" : ")"))
          .ValueName("NAME")
          .Group(clip);
  if (copied) {
    command.OnRight([&options, codec] {
      if (ContainerOf(options.file) == ClipContainer::kAvi) return;
      if (codec.IsGiven() && !options.copies) throw UsageError("--codec", "a clip in .mkv, or -, takes copy alone");
      options.copies = true;
    });
  }
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
  if (IsStandardStream(file)) return false;
  std::error_code error;
  const auto size = std::filesystem::file_size(file, error);
  return !error && size > 0;
}

std::optional<Problem> WhyTaken(const ClipOptions& options) {
  if (IsStandardStream(options.file)) return std::nullopt;
  std::error_code error;
  const std::string file = options.file.string();
  if (std::filesystem::is_other(options.file, error)) {
    return Problem{.kind = "unwritable", .text = file + " is no file that a clip can be in"};
  }
  if (options.overwrite || !HasContent(options.file)) return std::nullopt;
  return Problem{.kind = "exists", .text = file + " is there already; --overwrite replaces it"};
}

}  // namespace orbelcast
