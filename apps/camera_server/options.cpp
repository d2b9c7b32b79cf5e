#include "camera_server/options.h"

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <type_traits>
#include <utility>

#include "camera_server/addresses.h"
#include "camera_server/faults.h"
#include "camera_server/pictures.h"
#include "common/access.h"
#include "common/credentials_file.h"
#include "common/shown_text.h"
#include "common/usage.h"
#include "common/within.h"
#include "toolkit/ascii.h"
#include "toolkit/version.h"

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

/// What goes into a line, of headers or of the information, must not be able to end it or a field of it.
CLI::Validator LineText() {
  return {[](const std::string& text) {
            return HasControlCharacter(text) ? "holds a line break or another control character" : std::string();
          },
          ""};
}

/// "640x480" into a form.
CLI::Validator SizeInto(PictureForm& form) {
  return {[&form](const std::string& text) -> std::string {
            const std::size_t x = std::min(text.find('x'), text.size());
            form.width = WholeNumber(std::string_view(text).substr(0, x)).value_or(0);
            form.height = WholeNumber(std::string_view(text).substr(std::min(x + 1, text.size()))).value_or(0);
            const PictureForm bounded = form.Bounded();
            if (form.width == bounded.width && form.height == bounded.height) return {};
            return "give WIDTHxHEIGHT in pixels, from 16x16 to 3840x2160, such as 640x480";
          },
          ""};
}

/// The text before and behind its first "="; nothing behind it where there is none.
std::pair<std::string, std::string> CutAtEquals(const std::string& text) {
  const std::size_t equals = std::min(text.find('='), text.size());
  return {text.substr(0, equals), text.substr(std::min(equals + 1, text.size()))};
}

void Require(bool holds, const char* option, const std::string& otherwise) {
  if (!holds) throw CLI::ValidationError(option, otherwise);
}

}  // namespace

template <typename Value>
void Options::Add(const std::string& name, Value& value, const std::string& form, const std::string& help,
                  const CLI::Validator& check) {
  CLI::Option* const option = app_.add_option(name, value, help)->option_text(form)->group(group_)->check(check);
  if constexpr (std::is_same_v<Value, std::vector<std::string>>) option->allow_extra_args(false);
}

template <typename Value>
void Options::AddChoice(const std::string& name, Value& value, const std::map<std::string, Value>& words,
                        const std::string& form, const std::string& help) {
  const auto choose = [name, &value, words](const std::string& word) {
    const auto found = words.find(word);
    Require(found != words.end(), name.c_str(), "there is no choice '" + word + "'");
    value = found->second;
  };
  app_.add_option_function<std::string>(name, choose, help)->option_text(form)->group(group_);
}

void Options::AddNames(NameList& list, const std::string& form, const std::string& help) {
  Add("--" + list.word + "s", list.count, "COUNT [" + std::to_string(list.count) + "]",
      "How many " + list.word + "s there are, " + std::to_string(list.least) + " to " + std::to_string(list.most),
      Within(list.least, list.most));
  Add(list.option, list.names, form + " ...", "Name of " + list.word + " 1; once more for " + list.word + " 2" + help,
      LineText());
}

Options::Options() {
  app_.footer(Footer());
  constexpr std::size_t kHelpColumn = 33;
  app_.get_formatter()->column_width(kHelpColumn);
  app_.set_version_flag("--version", VersionText());
  AddCameraOptions();
  AddSiteOptions();
  AddAnswerOptions();
  AddUserOptions();
  AddTestOptions();
}

void Options::AddCameraOptions() {
  group_ = "Server";
  Add("--port", settings_.port, "PORT [8080]", "Port to listen on; 0 takes a free one", Within(0, 65535));
  Add("--listen", settings_.address, "ADDRESS [127.0.0.1]",
      "Numeric address to listen on; 0.0.0.0 is every network of this machine");
  group_ = "Cameras";
  AddNames(cameras_, "TEXT", ", and so on");
  Add("--size", typed_.size, "WIDTHxHEIGHT [640x480]", "Size of a picture that is asked for without one",
      SizeInto(settings_.form));
  Add("--quality", settings_.form.quality, "QUALITY [80]", "JPEG quality of such a picture, 1 to 100",
      Within(kMinQuality, kMaxQuality));
  AddChoice<Light>("--light", settings_.light, {{"own", Light::kOwn}, {"clock", Light::kClock}}, "LIGHT [own]",
                   "Time of day that a live picture shows: each camera's own, or the clock's");
  Add("--archive-hours", settings_.archive_hours, "HOURS [24]", "How far back the archive goes",
      Within(1, kMaxArchiveHours));
  Add("--archive-step", settings_.archive_step, "SECONDS [1]", "Time from one picture of the archive to the next",
      Within(1, kMaxArchiveStep));
  Add("--folder", settings_.folder, "DIR", "Send this folder's JPEG files in turn, as they are, instead of drawing",
      CLI::ExistingDirectory);
}

void Options::AddSiteOptions() {
  group_ = "Site";
  Add("--system-name", settings_.system_name, "TEXT [Orbelcast cameras]", "What the whole system is called",
      LineText());
  AddNames(alerts_, "TEXT", ", and so on");
  AddNames(inputs_, "NAME[=on]", ", and so on; with =on it is on at first");
  AddNames(outputs_, "NAME[=on]", ", and so on; with =on it is on at first");
  Add("--account", typed_.accounts, "NAME[=HOST[:PORT]] ... [demo]",
      "An account of the relay lookup, and the address that it leads to: this server without one", LineText());
}

void Options::AddAnswerOptions() {
  group_ = "What it tells";
  AddChoice<Recording>("--recording", settings_.recording,
                       {{"yes", Recording::kYes}, {"no", Recording::kNo}, {"alternate", Recording::kAlternate}},
                       "WHEN [alternate]", "Whether the cameras record: yes, no, or alternate (ten seconds of twenty)");
  Add("--vigilbox-info", settings_.vigilbox_info, "TEXT",
      "Send a VigilboxInfo header; viewers heed one that begins with 1", LineText());
  Add("--plugins", settings_.plug_ins, "TEXT", "Send a PlugIns header", LineText());
  Add("--gps", typed_.gps, "LAT,LON,ALT [47.3769,8.5417,408]", "Latitude, longitude and height; 'none' sends none",
      LineText());
  Add("--rc-query", settings_.rc_query, "TEXT [2]", "Value of the RC_QUERY header; empty sends none", LineText());
  Add("--flags", typed_.flags, "LIST [AES,CST,ADM]", "Which of AES, CST and ADM the information sets, or 'none'");
  Add("--info", typed_.values, "KEY=TEXT ...",
      "A value of the information instead of the server's own, such as UPS=12.5", LineText());
  Add("--info-text", typed_.info_file, "FILE", "Send this file as the information, as it is", CLI::ExistingFile);
}

void Options::AddUserOptions() {
  group_ = "Who may watch";
  AddChoice<AuthenticationScheme>("--auth", settings_.scheme,
                                  {{"basic", AuthenticationScheme::kBasic}, {"digest", AuthenticationScheme::kDigest}},
                                  "SCHEME", "Ask for a user name and a password: basic or digest");
  Add("--user", typed_.users, "NAME ...", "A user's name; may be given several times, each with its --password");
  Add("--password", typed_.passwords, "TEXT ...",
      "The user's password; others can read a command line, but not a file");
  Add("--credentials", typed_.credentials_files, "FILE ...",
      "A user from a file with the lines 'user = NAME' and 'password = TEXT'; may be given several times");
}

void Options::AddTestOptions() {
  group_ = "For tests";
  Add("--fault", typed_.faults, "PLACE=FAULT ...",
      "How a camera misbehaves, such as 2=status:503, all=delay:200 or 1=reset@5");
  Add("--log", settings_.log_file, "FILE", "Write every request, byte for byte, as a line of JSON");
  app_.add_flag("--log-passwords", settings_.shows_passwords,
                "Show passwords in that log and in /control/requests, which have *** otherwise")
      ->group(group_);
}

void Options::Parse(int argc, char** argv) {
  app_.parse(argc, argv);
  settings_.camera_names = NamesOf(cameras_);
  settings_.alerts = ContactsOf(alerts_);
  settings_.inputs = ContactsOf(inputs_);
  settings_.outputs = ContactsOf(outputs_);
  ReadAccounts();
  ReadInfo();
  ReadUsers();
  ReadFaults();
}

std::vector<std::string> Options::NamesOf(const NameList& list) const {
  const auto given = static_cast<int>(list.names.size());
  const int count = app_.count("--" + list.word + "s") == 0 && given > 0 ? given : list.count;
  const char* const option = list.option.c_str();
  Require(given <= list.most, option, "there can be no more than " + std::to_string(list.most));
  Require(given <= count, option, "there are more names than " + list.word + "s");
  std::vector<std::string> names = list.names;
  for (auto i = names.size(); i < static_cast<std::size_t>(count); ++i) {
    std::string word = list.word;
    word.front() = static_cast<char>(word.front() - 'a' + 'A');
    names.push_back(i < list.good_names.size() ? list.good_names.at(i) : word + " " + std::to_string(i + 1));
  }
  return names;
}

std::vector<Contact> Options::ContactsOf(const NameList& list) const {
  constexpr std::string_view kOn = "=on";
  std::vector<Contact> contacts;
  for (const std::string& text : NamesOf(list)) {
    const bool is_on = list.word != "alert" && text.ends_with(kOn);
    contacts.push_back({is_on ? text.substr(0, text.size() - kOn.size()) : text, is_on});
  }
  return contacts;
}

void Options::ReadAccounts() {
  Require(typed_.accounts.size() <= kMaxItems, "--account", "there can be no more than " + std::to_string(kMaxItems));
  if (typed_.accounts.empty()) typed_.accounts.emplace_back("demo");
  for (const std::string& text : typed_.accounts) {
    const auto [name, address] = CutAtEquals(text);
    Require(!name.empty() && name.find_first_of("/&?# ") == std::string::npos &&
                address.find_first_of("/ ") == std::string::npos,
            "--account", "give NAME or NAME=HOST:PORT, without blanks and slashes");
    settings_.accounts.push_back({name, address});
  }
}

void Options::ReadInfo() {
  if (!typed_.gps.empty()) settings_.gps = CLI::detail::split(typed_.gps, ',');
  if (typed_.gps == "none") settings_.gps.clear();
  Require(settings_.gps.size() == 3 || typed_.gps == "none", "--gps", "give LATITUDE,LONGITUDE,HEIGHT or 'none'");
  if (!typed_.flags.empty()) settings_.info_flags = CLI::detail::split(typed_.flags, ',');
  if (typed_.flags == "none") settings_.info_flags.clear();
  for (const std::string& flag : settings_.info_flags) {
    Require(flag == "AES" || flag == "CST" || flag == "ADM", "--flags",
            "there is no flag '" + flag + "'; there are AES, CST and ADM");
  }
  for (const std::string& text : typed_.values) {
    constexpr std::string_view kKeys = "SNM SVR SYN CPU RAM AME CPN CPS UPS ";
    const auto [key, value] = CutAtEquals(text);
    const bool is_key = key.size() == 3 && kKeys.find(key + " ") != std::string_view::npos;
    Require(is_key && text.size() > key.size(), "--info",
            "give one of SNM, SVR, SYN, CPU, RAM, AME, CPN, CPS and UPS, and =TEXT");
    settings_.info_values[key] = value;
  }
  if (typed_.info_file.empty()) return;
  try {
    settings_.info_text = ReadFile(typed_.info_file, kMaxInfoTextBytes);
  } catch (const std::exception&) {
    throw CLI::ValidationError("--info-text", "the file cannot be read, or is too large");
  }
}

void Options::ReadUsers() {
  for (const std::string& file : typed_.credentials_files) {
    try {
      const Credentials credentials = ReadCredentials(file);
      if (!credentials.user || !credentials.password) {
        throw CredentialsError(file + " must have both lines, 'user = NAME' and 'password = TEXT'");
      }
      if (credentials.readable_by_others) WarnOfReaders(app_, file);
      typed_.users.push_back(*credentials.user);
      typed_.passwords.push_back(*credentials.password);
    } catch (const CredentialsError& error) {
      throw CLI::ValidationError("--credentials", error.what());
    }
  }
  const bool is_open = settings_.scheme == AuthenticationScheme::kNone;
  Require(!is_open || typed_.users.empty(), "--user", "needs --auth basic or --auth digest");
  Require(is_open || !typed_.users.empty(), "--auth", "needs a --credentials FILE, or a --user and a --password");
  Require(typed_.users.size() == typed_.passwords.size(), "--user", "each needs one --password");
  for (std::size_t i = 0; i < typed_.users.size(); ++i) {
    Require(typed_.users[i].find(':') == std::string::npos, "--user", "a name holds no colon");
    settings_.users.push_back({typed_.users[i], typed_.passwords[i]});
    if (!settings_.shows_passwords) KeepSecret(typed_.passwords[i]);
  }
}

void Options::ReadFaults() {
  FaultPlan plan(static_cast<int>(settings_.camera_names.size()));
  for (const std::string& text : typed_.faults) {
    Require(text.find('=') != std::string::npos, "--fault", "give PLACE=FAULT, such as 2=status:503");
    settings_.faults.push_back(CutAtEquals(text));
    try {
      plan.Set(settings_.faults.back().first, settings_.faults.back().second);
    } catch (const std::invalid_argument& error) {
      throw CLI::ValidationError("--fault", error.what());
    }
  }
}

int Options::Report(const CLI::ParseError& error) const {
  return ReportUsage(app_, error);
}

}  // namespace orbelcast::camera_server
