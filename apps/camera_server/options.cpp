#include "options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <memory>
#include <set>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <utility>

#include "access.h"
#include "bounds.h"
#include "credentials_file.h"
#include "faults.h"
#include "shown_text.h"
#include "toolkit/ascii.h"
#include "toolkit/version.h"
#include "usage.h"
#include "within.h"

namespace orbelcast::camera_server {

namespace {

std::string Footer() {
  return "A camera's picture is at http://127.0.0.1:PORT/live/CAMERA; give that address to a\n"
         "viewer, or 127.0.0.1:PORT to a player. A browser shows everything at\n"
         "http://127.0.0.1:PORT/.\n"
         "\n"
         "Faults:\n" +
         FaultHelp() +
         "A fault's place is a camera's number, all (cameras), info, command or relay. With @N\n"
         "behind, a fault meets every Nth request only, with *N the next N requests.\n"
         "\n"
         "While the server runs, from this machine only:\n"
         "  GET /control/fault?camera=PLACE&fault=FAULT   sets one; /control/fault shows them\n"
         "  GET /control/input?input=N&state=1            switches an input\n"
         "  GET /control/requests                         shows what was asked, byte for byte\n"
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

/// What goes into a line, of headers or of the information, must not be able to end it or a field of it.
std::string CheckLineText(const std::string& text) {
  return HasControlCharacter(text) ? "holds a line break or another control character" : "";
}

/// "Siren" or "Porch light=on".
Contact ParseContact(const std::string& text) {
  constexpr std::string_view kOn = "=on";
  if (!text.ends_with(kOn)) return {text, false};
  return {text.substr(0, text.size() - kOn.size()), true};
}

std::shared_ptr<const std::string> ReadInfoFile(const std::string& name) {
  std::error_code error;
  const auto size = std::filesystem::file_size(name, error);
  if (error || size > kMaxInfoTextBytes) throw CLI::ValidationError("--info-text", "the file is too large");
  std::ifstream file(name, std::ios::binary);
  std::string text(std::istreambuf_iterator<char>(file), {});
  if (!file) throw CLI::ValidationError("--info-text", "the file cannot be read");
  return std::make_shared<const std::string>(std::move(text));
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

Options::Options()
    : app_("A camera server for demonstrations and tests.", "orbelcast-camera-server"),
      cameras_{.word = "camera",
               .good_names = {"Lime Street", "Mill Lane", "Harbour Road", "Orchard Way"},
               .least = 1,
               .most = kMaxCameras},
      alerts_{.word = "alert", .good_names = {"Fire", "Burglar", "Call for help"}, .most = kMaxItems},
      inputs_{.word = "input", .good_names = {"Motion sensor", "Garage door=on"}, .most = kMaxItems},
      outputs_{.word = "output", .good_names = {"Porch light=on", "Garden gate", "Siren"}, .most = kMaxItems} {
  app_.footer(Footer());
  constexpr std::size_t kHelpColumn = 33;
  app_.get_formatter()->column_width(kHelpColumn);
  app_.set_version_flag("--version", VersionText());
  AddServerOptions();
  AddCameraOptions();
  AddSiteOptions();
  AddHeaderOptions();
  AddUserOptions();
  AddTestOptions();
}

void Options::AddServerOptions() {
  app_.add_option("--port", settings_.port, "Port to listen on; 0 takes a free one")
      ->check(Within(0, 65535))
      ->option_text("PORT [8080]");
  app_.add_option("--listen", settings_.address,
                  "Numeric address to listen on; 0.0.0.0 is every network of this machine")
      ->option_text("ADDRESS [127.0.0.1]");
  GroupNew("Server");
}

void Options::AddNames(NameList& list, const std::string& count_help, const std::string& name_help,
                       const std::string& name_form) {
  list.count = static_cast<int>(list.good_names.size());
  app_.add_option("--" + list.word + "s", list.count, count_help)
      ->check(Within(list.least, list.most))
      ->option_text("COUNT [" + std::to_string(list.count) + "]");
  app_.add_option(list.word == "camera" ? "--name" : "--" + list.word, list.names, name_help)
      ->allow_extra_args(false)
      ->check(CheckLineText)
      ->option_text(name_form + " ...");
}

void Options::AddCameraOptions() {
  AddNames(cameras_, "How many cameras there are, 1 to " + std::to_string(kMaxCameras),
           "Name of camera 1; once more for camera 2, and so on", "TEXT");
  app_.add_option("--size", size_, "Size of a picture that is asked for without one")
      ->option_text("WIDTHxHEIGHT [640x480]");
  app_.add_option("--quality", settings_.form.quality, "JPEG quality of such a picture, 1 to 100")
      ->check(Within(kMinQuality, kMaxQuality))
      ->option_text("QUALITY [80]");
  AddChoice<Light>("--light", settings_.light, {{"own", Light::kOwn}, {"clock", Light::kClock}},
                   "Time of day that a live picture shows: each camera's own, or the clock's")
      ->option_text("LIGHT [own]");
  app_.add_option("--archive-hours", settings_.archive_hours, "How far back the archive goes")
      ->check(Within(1, kMaxArchiveHours))
      ->option_text("HOURS [24]");
  app_.add_option("--archive-step", settings_.archive_step, "Time from one picture of the archive to the next")
      ->check(Within(1, kMaxArchiveStep))
      ->option_text("SECONDS [1]");
  app_.add_option("--folder", settings_.folder,
                  "Send this folder's JPEG files in turn, as they are, instead of drawing")
      ->check(CLI::ExistingDirectory)
      ->option_text("DIR");
  GroupNew("Cameras");
}

void Options::AddSiteOptions() {
  app_.add_option("--system-name", settings_.system_name, "What the whole system is called")
      ->check(CheckLineText)
      ->option_text("TEXT [Orbelcast cameras]");
  const std::string most = ", 0 to " + std::to_string(kMaxItems);
  AddNames(alerts_, "How many alerts there are" + most, "Name of alert 1; once more for alert 2, and so on", "TEXT");
  AddNames(inputs_, "How many inputs there are" + most, "Name of input 1, and so on; with =on it is on", "NAME[=on]");
  AddNames(outputs_, "How many outputs there are" + most, "Name of output 1, and so on; with =on it is on at first",
           "NAME[=on]");
  app_.add_option("--account", accounts_,
                  "An account of the relay lookup, and the address that it leads to: this server without one")
      ->allow_extra_args(false)
      ->option_text("NAME[=HOST[:PORT]] ... [demo]");
  GroupNew("House");
}

void Options::AddHeaderOptions() {
  AddChoice<Recording>("--recording", settings_.recording,
                       {{"yes", Recording::kYes}, {"no", Recording::kNo}, {"alternate", Recording::kAlternate}},
                       "Whether the cameras record: yes, no, or alternate (ten seconds of twenty)")
      ->option_text("WHEN [alternate]");
  app_.add_option("--vigilbox-info", settings_.vigilbox_info,
                  "Send a VigilboxInfo header; viewers heed one that begins with 1")
      ->check(CheckLineText)
      ->option_text("TEXT");
  app_.add_option("--plugins", settings_.plug_ins, "Send a PlugIns header")->check(CheckLineText)->option_text("TEXT");
  app_.add_option("--gps", gps_, "Latitude, longitude and height; 'none' sends none")
      ->check(CheckLineText)
      ->option_text("LAT,LON,ALT [47.3769,8.5417,408]");
  app_.add_option("--rc-query", settings_.rc_query, "Value of the RC_QUERY header; empty sends none")
      ->check(CheckLineText)
      ->option_text("TEXT [2]");
  app_.add_option("--flags", flags_, "Which of AES, CST and ADM the information sets, or 'none'")
      ->option_text("LIST [AES,CST,ADM]");
  app_.add_option("--info", values_, "A value of the information instead of the server's own, such as UPS=12.5")
      ->allow_extra_args(false)
      ->check(CheckLineText)
      ->option_text("KEY=TEXT ...");
  app_.add_option("--info-text", info_file_, "Send this file as the information, as it is")
      ->check(CLI::ExistingFile)
      ->option_text("FILE");
  GroupNew("What it tells");
}

void Options::AddUserOptions() {
  AddChoice<AuthenticationScheme>("--auth", settings_.scheme,
                                  {{"basic", AuthenticationScheme::kBasic}, {"digest", AuthenticationScheme::kDigest}},
                                  "Ask for a user name and a password: basic or digest")
      ->option_text("SCHEME");
  app_.add_option("--user", users_, "A user's name; may be given several times, each with its --password")
      ->allow_extra_args(false)
      ->option_text("NAME ...");
  app_.add_option("--password", passwords_, "The user's password; others can read a command line, but not a file")
      ->allow_extra_args(false)
      ->option_text("TEXT ...");
  app_.add_option("--credentials", credentials_files_,
                  "A user from a file with the lines 'user = NAME' and 'password = TEXT'; may be given several times")
      ->allow_extra_args(false)
      ->option_text("FILE ...");
  GroupNew("Who may watch");
}

void Options::AddTestOptions() {
  app_.add_option("--fault", faults_, "How a camera misbehaves, such as 2=status:503, all=delay:200 or 1=reset@5")
      ->allow_extra_args(false)
      ->option_text("PLACE=FAULT ...");
  app_.add_option("--log", settings_.log_file, "Write every request, byte for byte, as a line of JSON")
      ->option_text("FILE");
  app_.add_flag("--log-passwords", settings_.shows_passwords,
                "Show passwords in that log and in /control/requests, which have *** otherwise");
  GroupNew("For tests");
}

void Options::GroupNew(const std::string& group) {
  for (CLI::Option* option : app_.get_options()) {
    const bool is_new =
        option->get_group() == "Options" && option != app_.get_help_ptr() && option != app_.get_version_ptr();
    if (is_new) option->group(group);
  }
}

void Options::Parse(int argc, char** argv) {
  app_.parse(argc, argv);
  if (!size_.empty()) ParseSize(size_, settings_.form);
  ReadNames();
  ReadAccounts();
  ReadInfo();
  CheckUsers();
  CheckFaults();
}

void Options::CheckUsers() {
  ReadCredentialsFiles();
  const bool is_open = settings_.scheme == AuthenticationScheme::kNone;
  if (is_open && !users_.empty()) throw CLI::ValidationError("--user", "needs --auth basic or --auth digest");
  if (!is_open && users_.empty())
    throw CLI::ValidationError("--auth", "needs a --credentials FILE, or a --user and a --password");
  if (users_.size() != passwords_.size()) throw CLI::ValidationError("--user", "each needs one --password");
  for (std::size_t i = 0; i < users_.size(); ++i) {
    if (users_[i].find(':') != std::string::npos) throw CLI::ValidationError("--user", "a name holds no colon");
    settings_.users.push_back({users_[i], passwords_[i]});
    if (!settings_.shows_passwords) KeepSecret(passwords_[i]);
  }
}

void Options::ReadCredentialsFiles() {
  for (const std::string& file : credentials_files_) {
    try {
      const Credentials credentials = ReadCredentials(file);
      if (!credentials.user || !credentials.password) {
        throw CredentialsError(file + " must have both lines, 'user = NAME' and 'password = TEXT'");
      }
      if (credentials.readable_by_others) WarnOfReaders(app_, file);
      users_.push_back(*credentials.user);
      passwords_.push_back(*credentials.password);
    } catch (const CredentialsError& error) {
      throw CLI::ValidationError("--credentials", error.what());
    }
  }
}

void Options::CheckFaults() {
  for (const std::string& text : faults_) {
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos) throw CLI::ValidationError("--fault", "give PLACE=FAULT, such as 2=status:503");
    settings_.faults.emplace_back(text.substr(0, equals), text.substr(equals + 1));
    try {
      FaultPlan unused;
      PlanFault(settings_, settings_.faults.back().first, settings_.faults.back().second, unused);
    } catch (const std::invalid_argument& error) {
      throw CLI::ValidationError("--fault", error.what());
    }
  }
}

std::vector<std::string> Options::NamesOf(const NameList& list) const {
  const auto least = static_cast<int>(list.names.size());
  const int count = app_.count("--" + list.word + "s") == 0 && least > 0 ? least : list.count;
  const std::string option = list.word == "camera" ? "--name" : "--" + list.word;
  if (least > list.most) {
    throw CLI::ValidationError(option, "there can be no more than " + std::to_string(list.most));
  }
  if (least > count) throw CLI::ValidationError(option, "there are more names than " + list.word + "s");
  std::vector<std::string> names = list.names;
  for (auto i = names.size(); i < static_cast<std::size_t>(count); ++i) {
    std::string word = list.word;
    word.front() = static_cast<char>(word.front() - 'a' + 'A');
    names.push_back(i < list.good_names.size() ? list.good_names.at(i) : word + " " + std::to_string(i + 1));
  }
  return names;
}

void Options::ReadNames() {
  settings_.camera_names = NamesOf(cameras_);
  settings_.alerts = NamesOf(alerts_);
  for (const std::string& text : NamesOf(inputs_)) settings_.inputs.push_back(ParseContact(text));
  for (const std::string& text : NamesOf(outputs_)) settings_.outputs.push_back(ParseContact(text));
}

void Options::ReadAccounts() {
  if (accounts_.size() > kMaxItems) {
    throw CLI::ValidationError("--account", "there can be no more than " + std::to_string(kMaxItems));
  }
  if (accounts_.empty()) accounts_.emplace_back("demo");
  for (const std::string& text : accounts_) {
    const std::size_t equals = std::min(text.find('='), text.size());
    const Account account{text.substr(0, equals), text.substr(std::min(equals + 1, text.size()))};
    if (account.name.empty() || account.name.find_first_of("/&?# ") != std::string::npos ||
        !CheckLineText(text).empty() || account.address.find_first_of("/ ") != std::string::npos) {
      throw CLI::ValidationError("--account", "give NAME or NAME=HOST:PORT, without blanks and slashes");
    }
    settings_.accounts.push_back(account);
  }
}

void Options::ReadInfo() {
  if (gps_ == "none") {
    settings_.gps = {};
  } else if (!gps_.empty()) {
    const std::vector<std::string> parts = CLI::detail::split(gps_, ',');
    if (parts.size() != 3) throw CLI::ValidationError("--gps", "give LATITUDE,LONGITUDE,HEIGHT or 'none'");
    settings_.gps = {parts.at(0), parts.at(1), parts.at(2)};
  }
  if (!flags_.empty()) settings_.info_flags.clear();
  if (flags_ != "none" && !flags_.empty()) settings_.info_flags = CLI::detail::split(flags_, ',');
  for (const std::string& flag : settings_.info_flags) {
    if (flag != "AES" && flag != "CST" && flag != "ADM") {
      throw CLI::ValidationError("--flags", "there is no flag '" + flag + "'; there are AES, CST and ADM");
    }
  }
  for (const std::string& text : values_) {
    static const std::set<std::string> keys{"SNM", "SVR", "SYN", "CPU", "RAM", "AME", "CPN", "CPS", "UPS"};
    const std::size_t equals = std::min(text.find('='), text.size());
    if (equals == text.size() || keys.count(text.substr(0, equals)) == 0) {
      throw CLI::ValidationError("--info", "give one of SNM, SVR, SYN, CPU, RAM, AME, CPN, CPS and UPS, and =TEXT");
    }
    settings_.info_values[text.substr(0, equals)] = text.substr(equals + 1);
  }
  if (!info_file_.empty()) settings_.info_text = ReadInfoFile(info_file_);
}

int Options::Report(const CLI::ParseError& error) const {
  return ReportUsage(app_, error);
}

}  // namespace orbelcast::camera_server
