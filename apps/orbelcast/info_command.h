#pragma once

#include <iosfwd>
#include <string>

#include "common/access.h"
#include "orbelcast/exit_status.h"

namespace CLI {
class App;
}

namespace orbelcast {

/// What `orbelcast info` was asked to do.
struct InfoOptions {
  std::string server;  ///< A host, host:port, or a relay account's address.
  Access access;
  double time_out = 10;  ///< Seconds, for connecting and for the answer each.
  bool json = false;
};

/// Declares the options of `info` on `command`, filling `options` when it is parsed.
void AddInfoOptions(CLI::App& command, InfoOptions& options);

/// Asks the server what it is and prints that to `output`, as a table or as JSON; what is wrong goes to `messages`.
ExitStatus Info(const InfoOptions& options, std::ostream& output, std::ostream& messages);

}  // namespace orbelcast
