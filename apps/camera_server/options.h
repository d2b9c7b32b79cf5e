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
  void AddCameraOptions();
  void AddHeaderOptions();
  void AddUserOptions();
  void AddTestOptions();
  /// An option whose value is one of a few words.
  template <typename Value>
  CLI::Option* AddChoice(const std::string& name, Value& value, const std::map<std::string, Value>& words,
                         const std::string& help);
  void CheckCameras();
  void CheckUsers();
  void CheckFaults();

  CLI::App app_;
  Settings settings_;
  int cameras_ = 4;
  std::string size_;
  std::vector<std::string> users_;
  std::vector<std::string> passwords_;
  std::vector<std::string> faults_;
};

}  // namespace orbelcast::camera_server
