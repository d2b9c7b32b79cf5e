#include "options.h"

#include <algorithm>
#include <charconv>
#include <iostream>
#include <map>
#include <system_error>

#include "bounds.h"
#include "exit_status.h"
#include "platform/version.h"

namespace orbelcast::camera_server {

namespace {

constexpr const char* kFooter =
    "A camera's picture is at http://127.0.0.1:PORT/live/CAMERA; give that address to a\n"
    "viewer. The suffix ?live-special0640x0480080 or ?width=640&height=480&quality=80\n"
    "chooses its size and quality. A browser shows all cameras at http://127.0.0.1:PORT/.\n"
    "\n"
    "Exit status: 0 it was ended by SIGINT or SIGTERM; 1 it could not listen or serve;\n"
    "2 wrong usage.";

bool ParseSide(const std::string& text, int least, int most, int& side) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), side);
  return error == std::errc() && end == text.data() + text.size() && side >= least && side <= most;
}

void ParseSize(const std::string& text, PictureForm& form) {
  const std::size_t x = std::min(text.find('x'), text.size());
  if (!ParseSide(text.substr(0, x), kMinSide, kMaxWidth, form.width) ||
      !ParseSide(text.substr(std::min(x + 1, text.size())), kMinSide, kMaxHeight, form.height)) {
    throw CLI::ValidationError("--size", "give WIDTHxHEIGHT in pixels, from " + std::to_string(kMinSide) + "x" +
                                             std::to_string(kMinSide) + " to " + std::to_string(kMaxWidth) + "x" +
                                             std::to_string(kMaxHeight) + ", such as 640x480");
  }
}

/// What goes into a header line must not be able to end it.
std::string CheckHeaderText(const std::string& text) {
  const bool is_bad =
      std::any_of(text.begin(), text.end(), [](unsigned char letter) { return letter < 0x20 || letter == 0x7f; });
  return is_bad ? "holds a line break or another control character" : "";
}

}  // namespace

Options::Options() : app_("A camera server for demonstrations and tests.", "orbelcast-camera-server") {
  app_.footer(kFooter);
  app_.set_version_flag("--version", std::to_string(kVersionMajor) + "." + std::to_string(kVersionMinor) + "." +
                                         std::to_string(kVersionRevision));
  app_.add_option("--port", settings_.port, "Port to listen on; 0 takes a free one")
      ->check(CLI::Range(0, 65535))
      ->capture_default_str();
  app_.add_option("--listen", settings_.address,
                  "Numeric address to listen on; 0.0.0.0 is every network of this machine")
      ->type_name("ADDRESS")
      ->capture_default_str();
  AddCameraOptions();
  AddHeaderOptions();
}

void Options::AddCameraOptions() {
  app_.add_option("--cameras", cameras_, "How many cameras there are")
      ->check(CLI::Range(1, kMaxCameras))
      ->capture_default_str();
  app_.add_option("--name", settings_.camera_names, "Name of camera 1; once more for camera 2, and so on")
      ->allow_extra_args(false)
      ->check(CheckHeaderText);
  app_.add_option("--size", size_, "Size of a picture that is asked for without one [640x480]")
      ->type_name("WIDTHxHEIGHT");
  app_.add_option("--quality", settings_.form.quality, "JPEG quality of such a picture")
      ->check(CLI::Range(kMinQuality, kMaxQuality))
      ->capture_default_str();
  app_.add_option("--folder", settings_.folder,
                  "Send the JPEG files of this folder in turn, as they are, instead of drawing")
      ->type_name("DIR")
      ->check(CLI::ExistingDirectory);
}

void Options::AddHeaderOptions() {
  static const std::map<std::string, Recording> kRecordings{
      {"yes", Recording::kYes}, {"no", Recording::kNo}, {"alternate", Recording::kAlternate}};
  app_.add_option("--recording", settings_.recording,
                  "The cameras record: yes, no, or alternate (ten seconds of twenty) [alternate]")
      ->type_name("WHEN")
      ->transform(CLI::Transformer(kRecordings).description(""))
      ->option_text("WHEN");
  app_.add_option("--vigilbox-info", settings_.vigilbox_info,
                  "Send a VigilboxInfo header with this text; viewers heed one that begins with 1")
      ->check(CheckHeaderText);
  app_.add_option("--plugins", settings_.plug_ins, "Send a PlugIns header with this text")->check(CheckHeaderText);
}

void Options::Parse(int argc, char** argv) {
  app_.parse(argc, argv);
  Check();
}

void Options::Check() {
  if (!size_.empty()) ParseSize(size_, settings_.form);
  if (settings_.camera_names.size() > kMaxCameras) {
    throw CLI::ValidationError("--name", "there can be no more than " + std::to_string(kMaxCameras) + " cameras");
  }
  if (app_.count("--cameras") == 0 && !settings_.camera_names.empty()) {
    cameras_ = static_cast<int>(settings_.camera_names.size());
  }
  if (settings_.camera_names.size() > static_cast<std::size_t>(cameras_)) {
    throw CLI::ValidationError("--name", "there are more names than cameras");
  }
  for (int camera = static_cast<int>(settings_.camera_names.size()) + 1; camera <= cameras_; ++camera) {
    settings_.camera_names.push_back("Camera " + std::to_string(camera));
  }
}

int Options::Report(const CLI::ParseError& error) const {
  if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) return app_.exit(error);
  std::cerr << "orbelcast-camera-server: " << error.what() << "\nSee 'orbelcast-camera-server --help'.\n";
  return kBadUsage;
}

}  // namespace orbelcast::camera_server
