#pragma once

#include <CLI/CLI.hpp>
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
  void Check();

  CLI::App app_;
  Settings settings_;
  int cameras_ = 4;
  std::string size_;
};

}  // namespace orbelcast::camera_server
