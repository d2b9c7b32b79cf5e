#pragma once

#include <CLI/CLI.hpp>
#include <map>
#include <string>
#include <vector>

#include "camera_server/settings.h"

namespace orbelcast::camera_server {

/// The command line, which fills the settings.
class Options {
 public:
  Options();
  /// Throws CLI::ParseError, also for --help and --version.
  void Parse(int argc, char** argv);
  /// Prints what the error is about, and gives the exit status that tells.
  int Report(const CLI::ParseError& error) const;
  const Settings& Result() const { return settings_; }

 private:
  /// A list of things by their names, such as --outputs COUNT and --output NAME, and what one is called without.
  struct NameList {
    std::string word;    ///< "output"
    std::string option;  ///< of a name: "--output"
    std::vector<std::string> good_names;
    int least;
    int most;
    std::vector<std::string> names{};
    int count = static_cast<int>(good_names.size());
  };

  /// An option in the group begun last; one that is a list takes a value each time it is given. `form` is how the help
  /// shows its value and its default.
  template <typename Value>
  void Add(const std::string& name, Value& value, const std::string& form, const std::string& help,
           const CLI::Validator& check = {});
  /// An option whose value is one of a few words.
  template <typename Value>
  void AddChoice(const std::string& name, Value& value, const std::map<std::string, Value>& words,
                 const std::string& form, const std::string& help);
  void AddNames(NameList& list, const std::string& form, const std::string& help);
  void AddCameraOptions();
  void AddSiteOptions();
  void AddAnswerOptions();
  void AddUserOptions();
  void AddTestOptions();

  /// Names for all that are to be there.
  std::vector<std::string> NamesOf(const NameList& list) const;
  std::vector<Contact> ContactsOf(const NameList& list) const;
  void ReadAccounts();
  void ReadInfo();
  void ReadUsers();
  void ReadFaults();

  CLI::App app_{"A camera server for demonstrations and tests.", "orbelcast-camera-server"};
  std::string group_;
  Settings settings_;
  NameList cameras_{"camera", "--name", {"Lime Street", "Mill Lane", "Harbour Road", "Orchard Way"}, 1, kMaxCameras};
  NameList alerts_{"alert", "--alert", {"Fire", "Burglar", "Call for help"}, 0, kMaxItems};
  NameList inputs_{"input", "--input", {"Motion sensor", "Garage door=on"}, 0, kMaxItems};
  NameList outputs_{"output", "--output", {"Porch light=on", "Garden gate", "Siren"}, 0, kMaxItems};
  /// What is read after the parse, as it was typed.
  struct Typed {
    std::string size;
    std::vector<std::string> accounts;
    std::string gps;
    std::string flags;
    std::vector<std::string> values;
    std::string info_file;
    std::vector<std::string> users;
    std::vector<std::string> passwords;
    std::vector<std::string> credentials_files;
    std::vector<std::string> faults;
  };
  Typed typed_;
};

}  // namespace orbelcast::camera_server
