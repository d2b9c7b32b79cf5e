#include "orbelcast/camera_options.h"

#include <algorithm>

#include "adapters/posix/configuration_file.h"
#include "common/command_line.h"
#include "common/option_values.h"
#include "common/shown_text.h"
#include "orbelcast/server_entries.h"
#include "protocol/relay.h"
#include "toolkit/ascii.h"

namespace orbelcast {

void AddCameraOptions(CommandLine& command, StreamOptions& stream) {
  command
      .AddText("CAMERA", stream.url,
               "The whole address of the camera's picture, or of a stream of them, which begins with http://; or a "
               "camera server, HOST or HOST:PORT")
      .Required()
      .Check(CheckCamera)
      .ShowEach(KeepSecretsOf)
      .ValueName("");
  command.AddText("--device", stream.device, "Of a camera server: the camera, by its id there (default: the first one)")
      .ValueName("ID");
  AddAccessOptions(command, stream.access, "User name, sent when the server asks for one (default: none)",
                   WithoutPassword::kAsk);
  AddMessageOptions(command, stream.messages);
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

Option AddTimeOutOption(CommandLine& command, std::optional<double>& seconds, const std::string& default_text) {
  return AddSecondsOption(command, "--timeout", seconds,
                          "End where no picture has come S seconds after the start; may have decimals (default: " +
                              default_text + ")")
      .Group("When to end (default: at Ctrl-C)");
}

bool NamesServer(const std::string& text) {
  return !StartsWithIgnoringCase(text, "http://");
}

std::string CheckCamera(const std::string& text) {
  const std::size_t path = text.find('/');
  const bool is_server = path >= text.size() - 1 || IsRelayAddress(LoadConfiguration().configuration, text);
  return NamesServer(text) && !text.empty() && is_server ? CheckServer(text) : CheckAddress(text);
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

void AddFileArgument(CommandLine& command, const std::function<void(const std::string&)>& take,
                     const std::string& help) {
  Option word = command.AddText("FILE", take, help).ValueName("");
  Option option =
      command.AddText("-o,--output", take, "The same as FILE").ValueName("FILE").Group("Output").Excludes(word);
  command.OnRight([word, option] {
    if (!word.IsGiven() && !option.IsGiven()) throw UsageError("FILE is required");
  });
}

void AddFileArgument(CommandLine& command, std::filesystem::path& file, const std::string& what) {
  const auto take = [&file](const std::string& text) {
    if (const std::string why = CheckWritable(text); !why.empty()) throw UsageError("FILE", why);
    file = text;
  };
  AddFileArgument(command, take,
                  "Where the " + what + " goes, as the server sent it; an existing file is replaced once the " + what +
                      " is there. - is standard output");
  command.Footer("Exit status: 0 the " + what + " is in FILE; 1 no " + what +
                 " came, and FILE is as it was; 2 wrong usage, or a file that cannot be written.");
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
