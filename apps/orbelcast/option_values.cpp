#include "option_values.h"

#include <algorithm>
#include <cctype>

#include "protocol/text.h"

namespace orbelcast {

std::string CheckAddress(const std::string& url) {
  constexpr std::string_view kScheme = "http://";
  const bool begins = url.size() > kScheme.size() &&
                      std::equal(kScheme.begin(), kScheme.end(), url.begin(), [](char expected, unsigned char given) {
                        return expected == static_cast<char>(std::tolower(given));
                      });
  if (!begins) return "a camera's address begins with http://, such as http://127.0.0.1:8080/live/1";
  if (std::any_of(url.begin(), url.end(), [](unsigned char letter) { return std::iscntrl(letter) != 0; })) {
    return "the address holds a line break or another control character";
  }
  return {};
}

PixelSize ParsePixelSize(const std::string& option, const std::string& text) {
  const auto sides = Split(text, "x");
  const auto read = [](std::string_view side, int& pixels) {
    return ParseWhole(side, pixels) && pixels >= 1 && pixels <= kMaxSide;
  };
  PixelSize size;
  if (sides.size() != 2 || !read(sides[0], size.width) || !read(sides[1], size.height)) {
    throw CLI::ValidationError(
        option, "give WIDTHxHEIGHT in pixels, each from 1 to " + std::to_string(kMaxSide) + ", such as 640x480");
  }
  return size;
}

void CheckWritable(const std::string& option, const std::string& file) {
  if (const std::string why = WhyUnwritable(file); !why.empty()) {
    throw CLI::ValidationError(option, "cannot write " + file + ": " + why);
  }
}

std::filesystem::path ParsePictureFile(const std::string& option, const std::string& text,
                                       std::initializer_list<PictureFormat> formats) {
  if (std::find(formats.begin(), formats.end(), FormatOf(text)) == formats.end()) {
    const bool jpeg = std::find(formats.begin(), formats.end(), PictureFormat::kJpeg) != formats.end();
    throw CLI::ValidationError(
        option, std::string("the file's name must end in ") + (jpeg ? ".png, .bmp or .jpg" : ".png or .bmp"));
  }
  CheckWritable(option, text);
  return text;
}

void AddAccessOptions(CLI::App& command, Access& access, const std::string& user_description) {
  const std::string group = "Access";
  command.add_option("--user", access.user, user_description)
      ->envname("ORBELCAST_USER")
      ->type_name("NAME")
      ->group(group);
  command
      .add_option("--password", access.password,
                  "Password. Other users of the machine can read a command line: the variable keeps it from them "
                  "(default: none)")
      ->envname("ORBELCAST_PASSWORD")
      ->type_name("TEXT")
      ->group(group);
}

}  // namespace orbelcast
