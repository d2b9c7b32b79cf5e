#pragma once

#include <iosfwd>
#include <string>

#include "common/access.h"
#include "orbelcast/exit_status.h"

namespace CLI {
class App;
}

namespace orbelcast {

/// What `orbelcast doctor` was asked to do.
struct DoctorOptions {
  std::string server;  ///< A host, host:port, a relay account's address; or the whole address of a picture.
  Access access;
  std::string device;    ///< The camera that is looked at, by its id on the server; empty is the first.
  double time_out = 10;  ///< Seconds, for each step.
  double seconds = 2;    ///< How long the camera's rate is measured.
  bool json = false;
};

/// Declares the options of `doctor` on `command`, filling `options` when it is parsed.
void AddDoctorOptions(CLI::App& command, DoctorOptions& options);

/// Goes the way to a camera's picture step by step and tells to `output` what works, and what to do where it does not.
/// kWorked where every step works.
ExitStatus Doctor(const DoctorOptions& options, std::ostream& output);

}  // namespace orbelcast
