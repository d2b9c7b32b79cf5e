#include "options.h"

#include <algorithm>
#include <charconv>
#include <iostream>
#include <map>
#include <stdexcept>
#include <system_error>

#include "bounds.h"
#include "exit_status.h"
#include "faults.h"
#include "platform/version.h"

namespace orbelcast::camera_server {

namespace {

std::string Footer() {
  return "A camera's picture is at http://127.0.0.1:PORT/live/CAMERA; give that address to a\n"
         "viewer. The suffix ?live-special0640x0480080 or ?width=640&height=480&quality=80\n"
         "chooses its size and quality. A browser shows all cameras at http://127.0.0.1:PORT/.\n"
         "\n"
         "Faults:\n" +
         FaultHelp() +
         "A fault with @N behind meets every Nth request only, with *N the next N requests.\n"
         "While the server runs, GET /control/fault?camera=CAMERA&fault=FAULT sets one, and\n"
         "/control/fault shows them; from this machine only.\n"
         "\n"
         "Exit status: 0 it was ended by SIGINT or SIGTERM; 1 it could not listen or serve;\n"
         "2 wrong usage.";
}

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

template <typename Value>
CLI::Option* Options::AddChoice(const std::string& name, Value& value, const std::map<std::string, Value>& words,
                                const std::string& help) {
  const auto choose = [name, &value, words](const std::string& word) {
    const auto found = words.find(word);
    if (found == words.end()) throw CLI::ValidationError(name, "there is no choice '" + word + "'");
    value = found->second;
  };
  return app_.add_option_function<std::string>(name, choose, help);
}

Options::Options() : app_("A camera server for demonstrations and tests.", "orbelcast-camera-server") {
  app_.footer(Footer());
  constexpr std::size_t kHelpColumn = 33;
  app_.get_formatter()->column_width(kHelpColumn);
  app_.set_version_flag("--version", std::to_string(kVersionMajor) + "." + std::to_string(kVersionMinor) + "." +
                                         std::to_string(kVersionRevision));
  app_.add_option("--port", settings_.port, "Port to listen on; 0 takes a free one")
      ->check(CLI::Range(0, 65535))
      ->option_text("PORT [8080]");
  app_.add_option("--listen", settings_.address,
                  "Numeric address to listen on; 0.0.0.0 is every network of this machine")
      ->option_text("ADDRESS [127.0.0.1]");
  AddCameraOptions();
  AddHeaderOptions();
  AddUserOptions();
  AddTestOptions();
}

void Options::AddTestOptions() {
  app_.add_option("--fault", faults_, "How a camera misbehaves, such as 2=status:503, all=delay:200 or 1=reset@5")
      ->allow_extra_args(false)
      ->option_text("CAMERA=FAULT ...");
  app_.add_option("--log", settings_.log_file, "Write every request, byte for byte, as a line of JSON")
      ->option_text("FILE");
  app_.add_flag("--log-passwords", settings_.shows_passwords,
                "Show passwords in that log and in /control/requests, which have *** otherwise");
}

void Options::AddCameraOptions() {
  app_.add_option("--cameras", cameras_, "How many cameras there are, up to " + std::to_string(kMaxCameras))
      ->check(CLI::Range(1, kMaxCameras))
      ->option_text("COUNT [4]");
  app_.add_option("--name", settings_.camera_names, "Name of camera 1; once more for camera 2, and so on")
      ->allow_extra_args(false)
      ->check(CheckHeaderText)
      ->option_text("TEXT ...");
  app_.add_option("--size", size_, "Size of a picture that is asked for without one")
      ->option_text("WIDTHxHEIGHT [640x480]");
  app_.add_option("--quality", settings_.form.quality, "JPEG quality of such a picture, 1 to 100")
      ->check(CLI::Range(kMinQuality, kMaxQuality))
      ->option_text("QUALITY [80]");
  app_.add_option("--folder", settings_.folder,
                  "Send this folder's JPEG files in turn, as they are, instead of drawing")
      ->check(CLI::ExistingDirectory)
      ->option_text("DIR");
}

void Options::AddHeaderOptions() {
  AddChoice<Recording>("--recording", settings_.recording,
                       {{"yes", Recording::kYes}, {"no", Recording::kNo}, {"alternate", Recording::kAlternate}},
                       "Whether the cameras record: yes, no, or alternate (ten seconds of twenty)")
      ->option_text("WHEN [alternate]");
  app_.add_option("--vigilbox-info", settings_.vigilbox_info,
                  "Send a VigilboxInfo header; viewers heed one that begins with 1")
      ->check(CheckHeaderText)
      ->option_text("TEXT");
  app_.add_option("--plugins", settings_.plug_ins, "Send a PlugIns header")
      ->check(CheckHeaderText)
      ->option_text("TEXT");
}

void Options::AddUserOptions() {
  AddChoice<AuthenticationScheme>("--auth", settings_.scheme,
                                  {{"basic", AuthenticationScheme::kBasic}, {"digest", AuthenticationScheme::kDigest}},
                                  "Ask for a user name and a password: basic or digest")
      ->option_text("SCHEME");
  app_.add_option("--user", users_, "A user's name; may be given several times, each with its --password")
      ->allow_extra_args(false)
      ->option_text("NAME ...");
  app_.add_option("--password", passwords_, "The user's password")->allow_extra_args(false)->option_text("TEXT ...");
}

void Options::Parse(int argc, char** argv) {
  app_.parse(argc, argv);
  CheckCameras();
  CheckUsers();
  CheckFaults();
}

void Options::CheckUsers() {
  const bool is_open = settings_.scheme == AuthenticationScheme::kNone;
  if (is_open && !users_.empty()) throw CLI::ValidationError("--user", "needs --auth basic or --auth digest");
  if (!is_open && users_.empty()) throw CLI::ValidationError("--auth", "needs a --user and a --password");
  if (users_.size() != passwords_.size()) throw CLI::ValidationError("--user", "each needs one --password");
  for (std::size_t i = 0; i < users_.size(); ++i) {
    if (users_[i].find(':') != std::string::npos) throw CLI::ValidationError("--user", "a name holds no colon");
    settings_.users.push_back({users_[i], passwords_[i]});
  }
}

void Options::CheckFaults() {
  for (const std::string& text : faults_) {
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos) throw CLI::ValidationError("--fault", "give CAMERA=FAULT, such as 2=status:503");
    settings_.faults.emplace_back(text.substr(0, equals), text.substr(equals + 1));
    try {
      FaultPlan unused;
      PlanFault(settings_, settings_.faults.back().first, settings_.faults.back().second, unused);
    } catch (const std::invalid_argument& error) {
      throw CLI::ValidationError("--fault", error.what());
    }
  }
}

void Options::CheckCameras() {
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
