#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/configuration.h"

namespace orbelcast {

/// A configuration and the errors in its sources, for people, a line each.
struct LoadedConfiguration {
  Configuration configuration;
  std::vector<std::string> problems;
};

/// Looks up an environment variable; nothing where it is unset or empty.
using Environment = std::function<std::optional<std::string>(const std::string& name)>;
/// The process's own.
std::optional<std::string> ProcessEnvironment(const std::string& name);

/// The system's file, which the user's file and then the environment override; the environment may name one file that
/// is read in place of both (docs/configuration.md). A wrong value is left out, the one below it holds.
LoadedConfiguration LoadConfiguration(const Environment& environment = ProcessEnvironment,
                                      const std::string& system_file = "/etc/orbelcast.conf");

/// The same, with the errors on standard error.
Configuration LoadConfigurationOrSayWhy();

}  // namespace orbelcast
