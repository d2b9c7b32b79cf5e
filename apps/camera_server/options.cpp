#include "camera_server/options.h"

#include <algorithm>
#include <functional>
#include <list>
#include <map>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "camera_server/addresses.h"
#include "camera_server/faults.h"
#include "camera_server/pictures.h"
#include "common/access.h"
#include "common/command_line.h"
#include "common/credentials_file.h"
#include "common/pixel_size.h"
#include "common/shown_text.h"
#include "toolkit/ascii.h"
#include "toolkit/version.h"

namespace orbelcast::camera_server {

namespace {

std::string Footer() {
  return "A camera's picture is at http://127.0.0.1:PORT/live/CAMERA, a stream of them at\n"
         "/stream/CAMERA; give such an address to a viewer, or 127.0.0.1:PORT to a player. A\n"
         "browser shows everything at http://127.0.0.1:PORT/.\n"
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

void Require(bool holds, const char* option, const std::string& otherwise) {
  if (!holds) throw UsageError(option, otherwise);
}

/// The items of a list with commas between; "none" has none.
std::vector<std::string> Items(std::string_view text) {
  std::vector<std::string> items;
  if (text == "none") return items;
  do {
    const auto [item, rest] = CutAt(text, ",");
    items.emplace_back(item);
    text = rest;
  } while (!text.empty());
  return items;
}

/// The error in a text for a line, of headers or of the information: it could end the line, or a field of it.
std::string WhyNoLine(const std::string& text) {
  return HasControlCharacter(text) ? "holds a line break or another control character" : std::string();
}

std::string NoMoreThan(int most) {
  return "there can be no more than " + std::to_string(most);
}

/// The options, which fill the settings.
class ServerOptions {
 public:
  ServerOptions() {
    line_.Footer(Footer());
    constexpr std::size_t kHelpColumn = 33;
    line_.HelpColumn(kHelpColumn);
    line_.Version(VersionText());
    line_.OnRight([this] { CompleteSettings(); });
    AddCameraOptions();
    AddSiteOptions();
    AddUserOptions();
  }

  std::variant<Settings, int> Read(int argc, char** argv) {
    if (const auto status = line_.Read(argc, argv)) return *status;
    return settings_;
  }

 private:
  /// A list of things by their names, such as --outputs COUNT and --output NAME, and what one is called without.
  struct List {
    std::string word;  ///< "output"
    std::string option;
    std::vector<std::string> good_names;
    int least;
    int most;
    std::vector<Contact>& contacts;
    bool has_state = false;  ///< a name may end in "=on"
    std::vector<std::string> names{};
    int count = static_cast<int>(good_names.size());
    std::optional<Option> count_option{};
  };

  /// Puts an option into the group begun last. `form` is how the help shows its value and its default.
  Option Place(Option option, const std::string& form) const { return option.Form(form).Group(group_).OneAtATime(); }
  Option AddText(const std::string& name, std::string& value, const std::string& form, const std::string& help) {
    return Place(line_.AddText(name, value, help), form);
  }
  Option AddText(const std::string& name, const std::string& form, const std::string& help,
                 const std::function<void(const std::string&)>& take) {
    return Place(line_.AddText(name, take, help), form).Check(WhyNoLine);
  }
  /// An option that may be given several times, with a value each time.
  Option AddList(const std::string& name, std::vector<std::string>& values, const std::string& form,
                 const std::string& help) {
    return Place(line_.AddList(name, values, help), form);
  }
  Option AddList(const std::string& name, const std::string& form, const std::string& help,
                 const std::function<void(const std::string&)>& take) {
    return Place(line_.AddList(name, take, help), form).Check(WhyNoLine);
  }
  Option AddNumber(const std::string& name, int& value, int least, int most, const std::string& form,
                   const std::string& help) {
    return Place(line_.AddNumber(name, value, least, most, help), form);
  }
  /// An option whose value is one of a few words.
  template <typename Value>
  void AddChoice(const std::string& name, Value& value, const std::map<std::string, Value>& words,
                 const std::string& form, const std::string& help) {
    AddText(name, form, help, [name, &value, words](const std::string& word) {
      Require(words.contains(word), name.c_str(), "there is no choice '" + word + "'");
      value = words.at(word);
    });
  }
  void AddNames(List list) {
    List& kept = lists_.emplace_back(std::move(list));
    kept.count_option = AddNumber(
        "--" + kept.word + "s", kept.count, kept.least, kept.most, "COUNT [" + std::to_string(kept.count) + "]",
        "How many " + kept.word + "s there are, " + std::to_string(kept.least) + " to " + std::to_string(kept.most));
    AddList(kept.option, kept.names, kept.has_state ? "NAME[=on] ..." : "TEXT ...",
            "Name of " + kept.word + " 1; once more for " + kept.word + " 2, and so on" +
                (kept.has_state ? "; with =on it is on at first" : ""))
        .Check(WhyNoLine);
  }

  void AddCameraOptions() {
    group_ = "Server";
    AddNumber("--port", settings_.port, 0, 65535, "PORT [8080]", "Port to listen on; 0 takes a free one");
    AddText("--listen", settings_.address, "ADDRESS [127.0.0.1]",
            "Numeric address to listen on; 0.0.0.0 is every network of this machine");
    group_ = "Cameras";
    AddNames({"camera",
              "--name",
              {"Lime Street", "Mill Lane", "Harbour Road", "Orchard Way"},
              1,
              kMaxCameras,
              settings_.cameras});
    AddText("--size", "WIDTHxHEIGHT [640x480]", "Size of a picture that is asked for without one",
            [this](const std::string& text) { ReadSize(text); });
    AddNumber("--quality", settings_.form.quality, kMinQuality, kMaxQuality, "QUALITY [80]",
              "JPEG quality of such a picture, 1 to 100");
    AddChoice<Light>("--light", settings_.light, {{"own", Light::kOwn}, {"clock", Light::kClock}}, "LIGHT [own]",
                     "Time of day that a live picture shows: each camera's own, or the clock's");
    AddNumber("--archive-hours", settings_.archive_hours, 1, kMaxArchiveHours, "HOURS [24]",
              "How far back the archive goes");
    AddNumber("--archive-step", settings_.archive_step, 1, kMaxArchiveStep, "SECONDS [1]",
              "Time from one picture of the archive to the next");
    AddText("--folder", settings_.folder, "DIR",
            "Send this folder's JPEG files in turn, as they are, instead of drawing")
        .CheckFolder();
  }

  void AddSiteOptions() {
    group_ = "Site";
    AddText("--system-name", settings_.system_name, "TEXT [Orbelcast cameras]", "What the whole system is called")
        .Check(WhyNoLine);
    AddText("--gateway", "http://HOST[:PORT]",
            "Show the cameras on the server's page by the elements of this gateway, which is to allow both",
            [this](const std::string& text) {
              const bool known = text.starts_with("http://") || text.starts_with("https://");
              Require(known && text.find_first_of("/?#\" '<>", text.find("//") + 2) == std::string::npos, "--gateway",
                      "give http://HOST:PORT, without a path");
              settings_.gateway = text;
            });
    AddNames({"alert", "--alert", {"Fire", "Burglar", "Call for help"}, 0, kMaxItems, settings_.alerts});
    AddNames({"input", "--input", {"Motion sensor", "Garage door=on"}, 0, kMaxItems, settings_.inputs, true});
    AddNames({"output", "--output", {"Porch light=on", "Garden gate", "Siren"}, 0, kMaxItems, settings_.outputs, true});
    AddList("--account", "NAME[=HOST[:PORT]] ... [demo]",
            "An account of the relay lookup, and the address that it leads to: this server without one",
            [this](const std::string& text) { ReadAccount(text); });
    group_ = "What it tells";
    AddChoice<Recording>("--recording", settings_.recording,
                         {{"yes", Recording::kYes}, {"no", Recording::kNo}, {"alternate", Recording::kAlternate}},
                         "WHEN [alternate]",
                         "Whether the cameras record: yes, no, or alternate (ten seconds of twenty)");
    AddText("--vigilbox-info", settings_.vigilbox_info, "TEXT",
            "Send a VigilboxInfo header; viewers heed one that begins with 1")
        .Check(WhyNoLine);
    AddText("--plugins", settings_.plug_ins, "TEXT", "Send a PlugIns header").Check(WhyNoLine);
    AddText("--gps", "LAT,LON,ALT [47.3769,8.5417,408]", "Latitude, longitude and height; 'none' sends none",
            [this](const std::string& text) {
              settings_.gps = Items(text);
              Require(settings_.gps.size() == 3 || settings_.gps.empty(), "--gps",
                      "give LATITUDE,LONGITUDE,HEIGHT or 'none'");
            });
    AddText("--rc-query", settings_.rc_query, "TEXT [2]", "Value of the RC_QUERY header; empty sends none")
        .Check(WhyNoLine);
    AddText("--flags", "LIST [AES,CST,ADM]", "Which of AES, CST and ADM the information sets, or 'none'",
            [this](const std::string& text) {
              for (const std::string& flag : settings_.info_flags = Items(text)) {
                Require(flag == "AES" || flag == "CST" || flag == "ADM", "--flags",
                        "there is no flag '" + flag + "'; there are AES, CST and ADM");
              }
            });
    AddList("--info", "KEY=TEXT ...", "A value of the information instead of the server's own, such as UPS=12.5",
            [this](const std::string& text) { ReadInfo(text); });
    AddText("--info-text", "FILE", "Send this file as the information, as it is", [this](const std::string& file) {
      try {
        settings_.info_text = ReadFile(file, kMaxInfoTextBytes);
      } catch (const std::exception&) {
        throw UsageError("--info-text", "the file cannot be read, or is too large");
      }
    }).CheckFile();
  }

  void AddUserOptions() {
    group_ = "Who may watch";
    AddChoice<AuthenticationScheme>(
        "--auth", settings_.scheme,
        {{"basic", AuthenticationScheme::kBasic}, {"digest", AuthenticationScheme::kDigest}}, "SCHEME",
        "Ask for a user name and a password: basic or digest");
    AddList("--user", users_, "NAME ...", "A user's name; may be given several times, each with its --password");
    AddList("--password", passwords_, "TEXT ...",
            "The user's password; others can read a command line, but not a file");
    AddList("--credentials", "FILE ...",
            "A user from a file with the lines 'user = NAME' and 'password = TEXT'; may be given several times",
            [this](const std::string& file) { ReadCredentialsFile(file); });
    group_ = "For tests";
    AddList("--fault", "PLACE=FAULT ...", "How a camera misbehaves, such as 2=status:503, all=delay:200 or 1=reset@5",
            [this](const std::string& text) {
              Require(text.find('=') != std::string::npos, "--fault", "give PLACE=FAULT, such as 2=status:503");
              settings_.faults.emplace_back(CutAt(text, "="));
            });
    AddText("--log", settings_.log_file, "FILE", "Write every request, byte for byte, as a line of JSON");
    line_
        .AddFlag("--log-passwords", settings_.shows_passwords,
                 "Show passwords in that log and in /control/requests, which have *** otherwise")
        .Group(group_);
  }

  void ReadSize(const std::string& text) {
    const Size size = ReadPixelSize(text).value_or(Size{});
    settings_.form.width = size.width;
    settings_.form.height = size.height;
    const PictureForm bounded = settings_.form.Bounded();
    Require(size.width == bounded.width && size.height == bounded.height, "--size",
            "give WIDTHxHEIGHT in pixels, from 16x16 to 3840x2160, such as 640x480");
  }

  void ReadAccount(const std::string& text) {
    const auto [name, address] = CutAt(text, "=");
    Require(!name.empty() && name.find_first_of("/&?# ") == std::string::npos &&
                address.find_first_of("/ ") == std::string::npos,
            "--account", "give NAME or NAME=HOST:PORT, without blanks and slashes");
    settings_.accounts.push_back({std::string(name), std::string(address)});
  }

  void ReadInfo(const std::string& text) {
    constexpr std::string_view kKeys = "SNM SVR SYN CPU RAM AME CPN CPS UPS";
    const auto [key, value] = CutAt(text, "=");
    const bool is_key = key.size() == 3 && key.find(' ') == key.npos && kKeys.find(key) != kKeys.npos;
    Require(is_key && text.size() > key.size(), "--info",
            "give one of SNM, SVR, SYN, CPU, RAM, AME, CPN, CPS and UPS, and =TEXT");
    settings_.info_values[std::string(key)] = value;
  }

  void ReadCredentialsFile(const std::string& file) {
    try {
      const Credentials credentials = ReadCredentials(file);
      if (!credentials.user || !credentials.password) {
        throw CredentialsError(file + " must have both lines, 'user = NAME' and 'password = TEXT'");
      }
      if (credentials.readable_by_others) WarnOfReaders(line_, file);
      users_.push_back(*credentials.user);
      passwords_.push_back(*credentials.password);
    } catch (const CredentialsError& error) {
      throw UsageError("--credentials", error.what());
    }
  }

  void CompleteSettings() {
    for (const List& list : lists_) ReadNames(list);
    if (settings_.accounts.empty()) settings_.accounts.push_back({"demo", ""});
    Require(settings_.accounts.size() <= kMaxItems, "--account", NoMoreThan(kMaxItems));
    ReadUsers();
    try {
      for (FaultPlan plan(static_cast<int>(settings_.cameras.size())); const auto& [place, fault] : settings_.faults) {
        plan.Set(place, fault);
      }
    } catch (const std::invalid_argument& error) {
      throw UsageError("--fault", error.what());
    }
  }

  void ReadUsers() {
    const bool is_open = settings_.scheme == AuthenticationScheme::kNone;
    Require(!is_open || users_.empty(), "--user", "needs --auth basic or --auth digest");
    Require(is_open || !users_.empty(), "--auth", "needs a --credentials FILE, or a --user and a --password");
    Require(users_.size() == passwords_.size(), "--user", "each needs one --password");
    for (std::size_t i = 0; i < users_.size(); ++i) {
      Require(users_[i].find(':') == std::string::npos, "--user", "a name holds no colon");
      settings_.users.push_back({users_[i], passwords_[i]});
      if (!settings_.shows_passwords) KeepSecret(passwords_[i]);
    }
  }

  /// Names for all that are to be there.
  void ReadNames(const List& list) {
    const auto given = static_cast<int>(list.names.size());
    const int count = list.count_option->IsGiven() || given == 0 ? list.count : given;
    const char* const option = list.option.c_str();
    Require(given <= list.most, option, NoMoreThan(list.most));
    Require(given <= count, option, "there are more names than " + list.word + "s");
    const auto made = [&list,
                       title = static_cast<char>(list.word.front() - 'a' + 'A') + list.word.substr(1)](std::size_t i) {
      return i < list.good_names.size() ? list.good_names[i] : title + " " + std::to_string(i + 1);
    };
    constexpr std::string_view kOn = "=on";
    for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
      std::string name = i < list.names.size() ? list.names[i] : made(i);
      const bool is_on = list.has_state && name.ends_with(kOn);
      if (is_on) name.resize(name.size() - kOn.size());
      list.contacts.push_back({name, is_on});
    }
  }

  CommandLine line_{"orbelcast-camera-server", "A camera server for demonstrations and tests."};
  std::string group_;
  Settings settings_;
  std::list<List> lists_;
  std::vector<std::string> users_;
  std::vector<std::string> passwords_;
};

}  // namespace

std::variant<Settings, int> ReadCommandLine(int argc, char** argv) {
  return ServerOptions().Read(argc, argv);
}

}  // namespace orbelcast::camera_server
