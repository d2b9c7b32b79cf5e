#pragma once

#include <filesystem>
#include <iosfwd>
#include <string>

#include "common/access.h"
#include "orbelcast/exit_status.h"

namespace CLI {
class App;
}

namespace orbelcast {

/// What `orbelcast log` was asked to do.
struct LogOptions {
  std::string server;  ///< A host, host:port, or a relay account's address.
  std::filesystem::path file;
  Access access;
  double time_out = 10;  ///< Seconds, for connecting and for the answer each.
};

/// Declares the options of `log` on `command`, filling `options` when it is parsed.
void AddLogOptions(CLI::App& command, LogOptions& options);

/// Saves the server's activity log as it was sent: the whole of which the player's window shows the newest part. What
/// is wrong goes to `messages`.
ExitStatus Log(const LogOptions& options, std::ostream& messages);

}  // namespace orbelcast
