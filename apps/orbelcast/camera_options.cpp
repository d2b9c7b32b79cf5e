#include "orbelcast/camera_options.h"

#include <algorithm>

#include "common/command_line.h"
#include "common/option_values.h"
#include "common/shown_text.h"
#include "toolkit/ascii.h"

namespace orbelcast {

void AddCameraOptions(CommandLine& command, std::string& url, Access& access) {
  command.AddText("URL", url, "The whole address of the camera's picture; begins with http://")
      .Required()
      .Check(CheckAddress)
      .ShowEach(KeepSecretsOf)
      .ValueName("");
  AddAccessOptions(command, access, "User name, sent when the server asks for one (default: none)");
}

void AddStreamOptions(CommandLine& command, std::int16_t& frame_rate, bool& auto_reconnect) {
  const std::string stream = "Stream";
  command
      .AddNumber("--frame-rate", frame_rate, 1, 30,
                 "Pictures a second, 1 to 30 (default: " + std::to_string(frame_rate) + ")")
      .ValueName("N")
      .Group(stream);
  command
      .AddFlag("--auto-reconnect", auto_reconnect,
               "Try again silently when the camera fails, also when it does not answer at first")
      .Group(stream);
}

void AddTimeOutOption(CommandLine& command, std::optional<double>& seconds, const std::string& of) {
  AddSecondsOption(command, "--timeout", seconds,
                   "End where no picture has come S seconds after the start; may have decimals (default: 10" + of + ")")
      .Group("When to end (default: at Ctrl-C)");
}

std::string CheckAddress(const std::string& url) {
  if (HasControlCharacter(url)) return "the address holds a line break or another control character";
  constexpr std::string_view kScheme = "http://";
  constexpr const char* kSuchAs = "such as http://127.0.0.1:8080/live/1";
  if (StartsWithIgnoringCase(url, kScheme) && url.size() > kScheme.size()) return {};
  if (StartsWithIgnoringCase(url, "https://"))
    return "cameras are asked by http, not https; give http://…, if the camera has that";
  if (url.empty() || url.size() == kScheme.size() || url.find("://") != std::string::npos) {
    return std::string("a camera's address begins with http://, ") + kSuchAs;
  }
  // Masked: the text typed may hold a password.
  return "a camera's address begins with http://; did you mean http://" + MaskedAddress(url).Text() + "?";
}

Option AddSizeOption(CommandLine& command, Size& size, const std::string& description) {
  const auto parse = [&size](const std::string& text) {
    const auto pixels = ReadPixelSize(text);
    if (!pixels) {
      throw UsageError("--size",
                       "give WIDTHxHEIGHT in pixels, each from 1 to " + std::to_string(kMaxSide) + ", such as 640x480");
    }
    size = *pixels;
  };
  return command.AddText("--size", parse, description).ValueName("WxH");
}

void AddFileArgument(CommandLine& command, std::filesystem::path& file, const std::string& description) {
  command
      .AddText(
          "FILE", [&file](const std::string& text) { file = text; }, description)
      .Check(CheckWritable)
      .Required()
      .ValueName("");
}

std::filesystem::path ParsePictureFile(const std::string& option, const std::string& text,
                                       std::initializer_list<PictureFormat> formats) {
  if (std::find(formats.begin(), formats.end(), FormatOf(text)) == formats.end()) {
    const bool jpeg = std::find(formats.begin(), formats.end(), PictureFormat::kJpeg) != formats.end();
    throw UsageError(option,
                     std::string("the file's name must end in ") + (jpeg ? ".png, .bmp or .jpg" : ".png or .bmp"));
  }
  if (const std::string why = CheckWritable(text); !why.empty()) throw UsageError(option, why);
  return text;
}

}  // namespace orbelcast
