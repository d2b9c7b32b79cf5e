#include "adapters/posix/configuration_file.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <iostream>
#include <string_view>
#include <utility>

#include "adapters/posix/key_value_lines.h"
#include "adapters/posix/named_file.h"
#include "toolkit/visible_text.h"

namespace orbelcast {

namespace {

/// Hand-written lines; whatever is larger is another file by mistake.
constexpr std::size_t kMaxFileBytes = 64 * 1024;
/// A name of the longest kind that the name service knows, a colon and a port.
constexpr std::size_t kMaxHostLength = 253 + 6;

constexpr const char* kFileVariable = "ORBELCAST_CONFIGURATION";

struct Setting {
  const char* key;
  const char* variable;
  std::string Configuration::*field;
};
constexpr std::array kSettings{
    Setting{"relay_host", "ORBELCAST_RELAY_HOST", &Configuration::relay_host},
    Setting{"relay_lookup_host", "ORBELCAST_RELAY_LOOKUP_HOST", &Configuration::relay_lookup_host},
};

bool IsHost(std::string_view text) {
  constexpr std::string_view kOthers = "-._:[]";
  return !text.empty() && text.size() <= kMaxHostLength && std::ranges::all_of(text, [&](char letter) {
    const bool word =
        (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') || (letter >= '0' && letter <= '9');
    return word || kOthers.find(letter) != std::string_view::npos;
  });
}

// The text goes to a terminal.
std::string Printable(std::string_view text) {
  constexpr std::size_t kEnough = 60;
  return "'" + WithoutControls(text.substr(0, kEnough)) + (text.size() > kEnough ? "…'" : "'");
}

class Loader {
 public:
  void ReadFile(const std::string& path, bool must_exist) {
    const FileContent file = ReadNamedFile(path, kMaxFileBytes);
    if (file.missing && !must_exist) return;
    if (!file.problem.empty()) {
      Report(path + ": cannot be read: " + file.problem +
             (must_exist ? std::string(" (") + kFileVariable + " names it)" : ""));
      return;
    }
    for (const KeyValueLine& line : KeyValueLines(file.text)) {
      ReadLine(path + ":" + std::to_string(line.number) + ": ", line);
    }
  }

  void Set(const Setting& setting, std::string_view value, const std::string& where) {
    if (IsHost(value)) {
      loaded.configuration.*setting.field = value;
    } else {
      Report(where + " is " + Printable(value) + ", which is no host name, nor host:port; left out");
    }
  }

  LoadedConfiguration loaded;

 private:
  void ReadLine(const std::string& where, const KeyValueLine& line) {
    const auto setting = std::ranges::find_if(kSettings, [&](const Setting& each) { return line.key == each.key; });
    if (!line.value) {
      Report(where + Printable(line.text) + " is no line of the form key = value");
    } else if (setting == kSettings.end()) {
      Report(where + "there is no setting " + Printable(line.key) + "; there are relay_host and relay_lookup_host");
    } else {
      Set(*setting, *line.value, where + setting->key);
    }
  }

  void Report(std::string problem) { loaded.problems.push_back(std::move(problem)); }
};

std::optional<std::string> UserFile(const Environment& environment) {
  auto folder = environment("XDG_CONFIG_HOME");
  if (folder && folder->front() == '/') return *folder + "/orbelcast/orbelcast.conf";
  const auto home = environment("HOME");
  if (!home) return std::nullopt;
  return *home + "/.config/orbelcast/orbelcast.conf";
}

}  // namespace

std::optional<std::string> ProcessEnvironment(const std::string& name) {
  const char* value = std::getenv(name.c_str());
  if (value == nullptr || *value == '\0') return std::nullopt;
  return value;
}

LoadedConfiguration LoadConfiguration(const Environment& environment, const std::string& system_file) {
  Loader loader;
  if (const auto file = environment(kFileVariable)) {
    loader.ReadFile(*file, true);
  } else {
    loader.ReadFile(system_file, false);
    if (const auto user_file = UserFile(environment)) loader.ReadFile(*user_file, false);
  }
  for (const Setting& setting : kSettings) {
    if (const auto value = environment(setting.variable)) loader.Set(setting, *value, setting.variable);
  }
  return loader.loaded;
}

Configuration LoadConfigurationOrSayWhy() {
  LoadedConfiguration loaded = LoadConfiguration();
  for (const std::string& problem : loaded.problems) std::cerr << "orbelcast: " << problem << "\n";
  return std::move(loaded.configuration);
}

}  // namespace orbelcast
