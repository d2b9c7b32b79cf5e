#pragma once

#include <CLI/CLI.hpp>
#include <map>
#include <string>
#include <vector>

#include "settings.h"

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
  /// Puts the options that were added since the last group into a group of the help.
  void GroupNew(const std::string& group);
  void AddServerOptions();
  void AddCameraOptions();
  void AddSiteOptions();
  void AddHeaderOptions();
  void AddUserOptions();
  void AddTestOptions();
  /// An option whose value is one of a few words.
  template <typename Value>
  CLI::Option* AddChoice(const std::string& name, Value& value, const std::map<std::string, Value>& words,
                         const std::string& help);
  /// A list of things by their names, such as --outputs COUNT and --output NAME, and what one is called without.
  struct NameList {
    std::string word;  ///< "output"
    std::vector<std::string> good_names;
    int least = 0;
    int most = 0;
    int count = 0;
    std::vector<std::string> names{};
  };
  void AddNames(NameList& list, const std::string& count_help, const std::string& name_help,
                const std::string& name_form);
  /// Names for all that are to be there.
  std::vector<std::string> NamesOf(const NameList& list) const;
  void ReadNames();
  void ReadAccounts();
  void ReadInfo();
  void CheckUsers();
  void ReadCredentialsFiles();
  void CheckFaults();

  CLI::App app_;
  Settings settings_;
  NameList cameras_;
  NameList alerts_;
  NameList inputs_;
  NameList outputs_;
  std::vector<std::string> accounts_;
  std::string gps_;
  std::string flags_;
  std::vector<std::string> values_;
  std::string info_file_;
  std::string size_;
  std::vector<std::string> users_;
  std::vector<std::string> passwords_;
  std::vector<std::string> credentials_files_;
  std::vector<std::string> faults_;
};

}  // namespace orbelcast::camera_server
