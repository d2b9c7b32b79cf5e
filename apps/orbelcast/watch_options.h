#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <set>
#include <string>

#include "common/access.h"

namespace CLI {
class App;
}

namespace orbelcast {

/// What `orbelcast watch` was asked to do.
struct WatchOptions {
  std::string url;
  Access access;
  std::int16_t frame_rate = 1;  ///< Pictures a second, 1 to 30.
  int width = 640;              ///< The video area, in pixels.
  int height = 480;
  std::optional<std::array<std::int32_t, 4>> motion_area;  ///< x1, y1, x2, y2 in hundredths of the picture.
  std::optional<std::string> motion_zones;                 ///< One character a zone, "0" excludes it.
  std::int32_t sensitivity = 80;                           ///< Percent.
  bool auto_reconnect = false;
  bool once = false;
  std::optional<int> frames;                                 ///< End after that many pictures.
  std::optional<double> seconds;                             ///< End after that time.
  std::optional<double> time_out;                            ///< End after that time where no picture came.
  std::filesystem::path picture;                             ///< Where the last picture goes; empty for nowhere.
  bool picture_as_sent = false;                              ///< As the server sent it, whatever the name ends in.
  std::optional<std::set<std::string, std::less<>>> events;  ///< The events to print; all where not given.

  bool Motion() const { return motion_area || motion_zones; }
};

/// Declares the options of `watch` on `command`, filling `options` when it is parsed. Wrong values end the parse with a
/// CLI::ValidationError that says what is expected.
void AddWatchOptions(CLI::App& command, WatchOptions& options);

}  // namespace orbelcast
