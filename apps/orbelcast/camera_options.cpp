#include "orbelcast/camera_options.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "common/option_values.h"
#include "common/shown_text.h"
#include "toolkit/ascii.h"

namespace orbelcast {

void AddCameraOptions(CLI::App& command, std::string& url, Access& access) {
  command.add_option("URL", url, "The whole address of the camera's picture; begins with http://")
      ->required()
      ->check(CheckAddress)
      ->each(KeepSecretsOf)
      ->type_name("");
  AddAccessOptions(command, access, "User name, sent when the server asks for one (default: none)");
}

void AddStreamOptions(CLI::App& command, std::int16_t& frame_rate, bool& auto_reconnect) {
  const std::string stream = "Stream";
  command
      .add_option("--frame-rate", frame_rate,
                  "Pictures a second, 1 to 30 (default: " + std::to_string(frame_rate) + ")")
      ->check(Within(1, 30))
      ->type_name("N")
      ->group(stream);
  command
      .add_flag("--auto-reconnect", auto_reconnect,
                "Try again silently when the camera fails, also when it does not answer at first")
      ->group(stream);
}

void AddTimeOutOption(CLI::App& command, std::optional<double>& seconds, const std::string& of) {
  AddSecondsOption(command, "--timeout", seconds,
                   "End where no picture has come S seconds after the start; may have decimals (default: 10" + of + ")")
      ->group("When to end (default: at Ctrl-C)");
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

CLI::Option* AddSizeOption(CLI::App& command, PixelSize& size, const std::string& description) {
  const auto parse = [&size](const std::string& text) {
    const auto pixels = ReadPixelSize(text);
    if (!pixels) {
      throw CLI::ValidationError(
          "--size", "give WIDTHxHEIGHT in pixels, each from 1 to " + std::to_string(kMaxSide) + ", such as 640x480");
    }
    size = *pixels;
  };
  return command.add_option_function<std::string>("--size", parse, description)->type_name("WxH");
}

void AddFileArgument(CLI::App& command, std::filesystem::path& file, const std::string& description) {
  command
      .add_option_function<std::string>(
          "FILE", [&file](const std::string& text) { file = text; }, description)
      ->check(CheckWritable)
      ->required()
      ->type_name("");
}

std::filesystem::path ParsePictureFile(const std::string& option, const std::string& text,
                                       std::initializer_list<PictureFormat> formats) {
  if (std::find(formats.begin(), formats.end(), FormatOf(text)) == formats.end()) {
    const bool jpeg = std::find(formats.begin(), formats.end(), PictureFormat::kJpeg) != formats.end();
    throw CLI::ValidationError(
        option, std::string("the file's name must end in ") + (jpeg ? ".png, .bmp or .jpg" : ".png or .bmp"));
  }
  if (const std::string why = CheckWritable(text); !why.empty()) throw CLI::ValidationError(option, why);
  return text;
}

}  // namespace orbelcast
