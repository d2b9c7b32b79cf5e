#pragma once

#include <filesystem>
#include <optional>
#include <set>
#include <string>

#include "common/pixel_size.h"
#include "stream/stream_options.h"

namespace orbelcast {

class CommandLine;

/// The options of `orbelcast watch`.
struct WatchOptions {
  StreamOptions stream;
  Size size{640, 480};                                       ///< The video area.
  bool once = false;                                         ///< Fetch a single picture.
  std::optional<int> frames;                                 ///< End after that many pictures.
  std::optional<double> seconds;                             ///< End after that time.
  std::optional<double> time_out;                            ///< End after that time where no picture came.
  std::filesystem::path picture;                             ///< The file for the last picture; empty for none.
  std::string from;                                          ///< The camera's name in messages; empty is its address.
  bool decodes_all = false;                                  ///< A picture counts only if it can be decoded.
  bool picture_as_sent = false;                              ///< As the server sent it, whatever the name ends in.
  std::optional<std::set<std::string, std::less<>>> events;  ///< The events to print; all where not given.
};

/// Declares the options of `watch` on `command`, filling `options` when it is parsed. Wrong values end the parse with a
/// UsageError that says what is expected.
void AddWatchOptions(CommandLine& command, WatchOptions& options);

}  // namespace orbelcast
