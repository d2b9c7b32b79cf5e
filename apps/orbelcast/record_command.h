#pragma once

#include <iosfwd>
#include <optional>
#include <string>

#include "common/access.h"
#include "orbelcast/clip_options.h"
#include "orbelcast/exit_status.h"

namespace CLI {
class App;
}

namespace orbelcast {

/// What `orbelcast record` was asked to do.
struct RecordOptions {
  std::string url;
  Access access;
  ClipOptions clip;
  std::int16_t frame_rate = 10;  ///< Pictures a second, 1 to 30.
  bool auto_reconnect = false;
  std::optional<int> frames;       ///< End after that many pictures.
  std::optional<double> seconds;   ///< End when the clip is that long.
  std::optional<double> time_out;  ///< End after that time where no picture came.
  bool json = false;
};

/// Declares the options of `record` on `command`, filling `options` when it is parsed.
void AddRecordOptions(CLI::App& command, RecordOptions& options);

/// Records a camera until the options, a failure or a signal end it. A line about the finished clip goes to `output`,
/// what people should know to `messages`; how far it is to standard error, where that is a terminal.
ExitStatus Record(const RecordOptions& options, std::ostream& output, std::ostream& messages);

}  // namespace orbelcast
