#pragma once

#include <variant>

#include "camera_server/settings.h"

namespace orbelcast::camera_server {

/// The settings that the command line asks for; or the exit status, when --help, --version or what is wrong with it has
/// been printed.
std::variant<Settings, int> ReadCommandLine(int argc, char** argv);

}  // namespace orbelcast::camera_server
