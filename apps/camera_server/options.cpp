#include "camera_server/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <functional>
#include <list>
#include <map>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "camera_server/addresses.h"
#include "camera_server/faults.h"
#include "camera_server/pictures.h"
#include "common/access.h"
#include "common/credentials_file.h"
#include "common/pixel_size.h"
#include "common/shown_text.h"
#include "common/usage.h"
#include "common/within.h"
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
  if (!holds) throw CLI::ValidationError(option, otherwise);
}

/// The items of a list with commas between; "none" has none.
std::vector<std::string> Items(const std::string& text) {
  return text == "none" ? std::vector<std::string>() : CLI::detail::split(text, ',');
}

std::string NoMoreThan(int most) {
  return "there can be no more than " + std::to_string(most);
}

/// The command line, which fills the settings.
class CommandLine {
 public:
  CommandLine() {
    app_.footer(Footer());
    constexpr std::size_t kHelpColumn = 33;
    app_.get_formatter()->column_width(kHelpColumn);
    app_.set_version_flag("--version", VersionText());
    AddCameraOptions();
    AddSiteOptions();
    AddUserOptions();
  }

  std::variant<Settings, int> Read(int argc, char** argv) {
    try {
      app_.parse(argc, argv);
      for (const List& list : lists_) ReadNames(list);
      if (settings_.accounts.empty()) settings_.accounts.push_back({"demo", ""});
      Require(settings_.accounts.size() <= kMaxItems, "--account", NoMoreThan(kMaxItems));
      ReadUsers();
      for (FaultPlan plan(static_cast<int>(settings_.cameras.size())); const auto& [place, fault] : settings_.faults) {
        plan.Set(place, fault);
      }
      return settings_;
    } catch (const std::invalid_argument& error) {
      return ReportUsage(app_, CLI::ValidationError("--fault", error.what()));
    } catch (const CLI::ParseError& error) {
      return ReportUsage(app_, error);
    }
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
  };

  /// An option in the group begun last; one that is a list takes a value each time it is given. `form` is how the help
  /// shows its value and its default.
  template <typename Value>
  void Add(const std::string& name, Value& value, const std::string& form, const std::string& help,
           const CLI::Validator& check = {}) {
    Complete(app_.add_option(name, value, help), form)->check(check);
  }
  void AddText(const std::string& name, std::string& value, const std::string& form, const std::string& help) {
    Add(name, value, form, help, line_text_);
  }
  /// An option of which each value is given to `take`, which throws what is wrong with one.
  CLI::Option* AddEach(const std::string& name, const std::string& form, const std::string& help,
                       const std::function<void(const std::string&)>& take) {
    const auto take_all = [take](const std::vector<std::string>& values) { std::ranges::for_each(values, take); };
    return Complete(app_.add_option_function<std::vector<std::string>>(name, take_all, help), form)->check(line_text_);
  }
  CLI::Option* Complete(CLI::Option* option, const std::string& form) const {
    return option->option_text(form)->group(group_)->allow_extra_args(false);
  }
  /// The same of one value.
  CLI::Option* AddOne(const std::string& name, const std::string& form, const std::string& help,
                      const std::function<void(const std::string&)>& take) {
    return AddEach(name, form, help, take)->expected(1);
  }
  /// An option whose value is one of a few words.
  template <typename Value>
  void AddChoice(const std::string& name, Value& value, const std::map<std::string, Value>& words,
                 const std::string& form, const std::string& help) {
    AddOne(name, form, help, [name, &value, words](const std::string& word) {
      Require(words.contains(word), name.c_str(), "there is no choice '" + word + "'");
      value = words.at(word);
    });
  }
  void AddNames(List list) {
    List& kept = lists_.emplace_back(std::move(list));
    Add("--" + kept.word + "s", kept.count, "COUNT [" + std::to_string(kept.count) + "]",
        "How many " + kept.word + "s there are, " + std::to_string(kept.least) + " to " + std::to_string(kept.most),
        Within(kept.least, kept.most));
    Add(kept.option, kept.names, kept.has_state ? "NAME[=on] ..." : "TEXT ...",
        "Name of " + kept.word + " 1; once more for " + kept.word + " 2, and so on" +
            (kept.has_state ? "; with =on it is on at first" : ""),
        line_text_);
  }

  void AddCameraOptions() {
    group_ = "Server";
    Add("--port", settings_.port, "PORT [8080]", "Port to listen on; 0 takes a free one", Within(0, 65535));
    Add("--listen", settings_.address, "ADDRESS [127.0.0.1]",
        "Numeric address to listen on; 0.0.0.0 is every network of this machine");
    group_ = "Cameras";
    AddNames({"camera",
              "--name",
              {"Lime Street", "Mill Lane", "Harbour Road", "Orchard Way"},
              1,
              kMaxCameras,
              settings_.cameras});
    AddOne("--size", "WIDTHxHEIGHT [640x480]", "Size of a picture that is asked for without one",
           [this](const std::string& text) { ReadSize(text); });
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

  void AddSiteOptions() {
    group_ = "Site";
    AddText("--system-name", settings_.system_name, "TEXT [Orbelcast cameras]", "What the whole system is called");
    AddNames({"alert", "--alert", {"Fire", "Burglar", "Call for help"}, 0, kMaxItems, settings_.alerts});
    AddNames({"input", "--input", {"Motion sensor", "Garage door=on"}, 0, kMaxItems, settings_.inputs, true});
    AddNames({"output", "--output", {"Porch light=on", "Garden gate", "Siren"}, 0, kMaxItems, settings_.outputs, true});
    AddEach("--account", "NAME[=HOST[:PORT]] ... [demo]",
            "An account of the relay lookup, and the address that it leads to: this server without one",
            [this](const std::string& text) { ReadAccount(text); });
    group_ = "What it tells";
    AddChoice<Recording>("--recording", settings_.recording,
                         {{"yes", Recording::kYes}, {"no", Recording::kNo}, {"alternate", Recording::kAlternate}},
                         "WHEN [alternate]",
                         "Whether the cameras record: yes, no, or alternate (ten seconds of twenty)");
    AddText("--vigilbox-info", settings_.vigilbox_info, "TEXT",
            "Send a VigilboxInfo header; viewers heed one that begins with 1");
    AddText("--plugins", settings_.plug_ins, "TEXT", "Send a PlugIns header");
    AddOne("--gps", "LAT,LON,ALT [47.3769,8.5417,408]", "Latitude, longitude and height; 'none' sends none",
           [this](const std::string& text) {
             settings_.gps = Items(text);
             Require(settings_.gps.size() == 3 || settings_.gps.empty(), "--gps",
                     "give LATITUDE,LONGITUDE,HEIGHT or 'none'");
           });
    AddText("--rc-query", settings_.rc_query, "TEXT [2]", "Value of the RC_QUERY header; empty sends none");
    AddOne("--flags", "LIST [AES,CST,ADM]", "Which of AES, CST and ADM the information sets, or 'none'",
           [this](const std::string& text) {
             for (const std::string& flag : settings_.info_flags = Items(text)) {
               Require(flag == "AES" || flag == "CST" || flag == "ADM", "--flags",
                       "there is no flag '" + flag + "'; there are AES, CST and ADM");
             }
           });
    AddEach("--info", "KEY=TEXT ...", "A value of the information instead of the server's own, such as UPS=12.5",
            [this](const std::string& text) { ReadInfo(text); });
    AddOne("--info-text", "FILE", "Send this file as the information, as it is", [this](const std::string& file) {
      try {
        settings_.info_text = ReadFile(file, kMaxInfoTextBytes);
      } catch (const std::exception&) {
        throw CLI::ValidationError("--info-text", "the file cannot be read, or is too large");
      }
    })->check(CLI::ExistingFile);
  }

  void AddUserOptions() {
    group_ = "Who may watch";
    AddChoice<AuthenticationScheme>(
        "--auth", settings_.scheme,
        {{"basic", AuthenticationScheme::kBasic}, {"digest", AuthenticationScheme::kDigest}}, "SCHEME",
        "Ask for a user name and a password: basic or digest");
    Add("--user", users_, "NAME ...", "A user's name; may be given several times, each with its --password");
    Add("--password", passwords_, "TEXT ...", "The user's password; others can read a command line, but not a file");
    AddEach("--credentials", "FILE ...",
            "A user from a file with the lines 'user = NAME' and 'password = TEXT'; may be given several times",
            [this](const std::string& file) { ReadCredentialsFile(file); });
    group_ = "For tests";
    AddEach("--fault", "PLACE=FAULT ...", "How a camera misbehaves, such as 2=status:503, all=delay:200 or 1=reset@5",
            [this](const std::string& text) {
              Require(text.find('=') != std::string::npos, "--fault", "give PLACE=FAULT, such as 2=status:503");
              settings_.faults.emplace_back(CutAt(text, "="));
            });
    Add("--log", settings_.log_file, "FILE", "Write every request, byte for byte, as a line of JSON");
    app_.add_flag("--log-passwords", settings_.shows_passwords,
                  "Show passwords in that log and in /control/requests, which have *** otherwise")
        ->group(group_);
  }

  void ReadSize(const std::string& text) {
    const PixelSize size = ReadPixelSize(text).value_or(PixelSize{});
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
      if (credentials.readable_by_others) WarnOfReaders(app_, file);
      users_.push_back(*credentials.user);
      passwords_.push_back(*credentials.password);
    } catch (const CredentialsError& error) {
      throw CLI::ValidationError("--credentials", error.what());
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
    const int count = app_.count("--" + list.word + "s") == 0 && given > 0 ? given : list.count;
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

  CLI::App app_{"A camera server for demonstrations and tests.", "orbelcast-camera-server"};
  std::string group_;
  /// A text for a line, of headers or of the information, must not be able to end it or a field of it.
  const CLI::Validator line_text_{[](const std::string& text) {
                                    return HasControlCharacter(text) ? "holds a line break or another control character"
                                                                     : std::string();
                                  },
                                  ""};
  Settings settings_;
  std::list<List> lists_;
  std::vector<std::string> users_;
  std::vector<std::string> passwords_;
};

}  // namespace

std::variant<Settings, int> ReadCommandLine(int argc, char** argv) {
  return CommandLine().Read(argc, argv);
}

}  // namespace orbelcast::camera_server
