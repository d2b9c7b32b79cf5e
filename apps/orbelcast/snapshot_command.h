#pragma once

#include <iosfwd>

#include "orbelcast/exit_status.h"
#include "orbelcast/watch_options.h"

namespace CLI {
class App;
}

namespace orbelcast {

/// What `orbelcast snapshot` was asked to do.
struct SnapshotOptions {
  WatchOptions watch;  ///< A single picture, as it was sent; no event is printed.
  bool json = false;
};

/// Declares the options of `snapshot` on `command`, filling `options` when it is parsed.
void AddSnapshotOptions(CLI::App& command, SnapshotOptions& options);

/// Saves a camera's picture. With `json` what was saved goes to `output`; why there is none goes to `messages`.
ExitStatus Snapshot(const SnapshotOptions& options, std::ostream& output, std::ostream& messages);

}  // namespace orbelcast
