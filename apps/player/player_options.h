#pragma once

#include <CLI/CLI.hpp>
#include <QSize>
#include <array>
#include <optional>
#include <string>

namespace orbelcast {

/// What the player program was asked to do.
struct PlayerOptions {
  std::string url;
  std::string user;
  std::string password;
  int frame_rate = 25;                            ///< Pictures a second, 1 to 30.
  std::string size = "640x480";                   ///< The window's, in pixels.
  std::optional<std::array<int, 4>> motion_area;  ///< x1, y1, x2, y2 in hundredths of the picture.
  std::optional<std::string> motion_zones;        ///< One character a zone, "0" excludes it.
  int sensitivity = 80;                           ///< Percent.
  bool show_motion = false;
  bool auto_reconnect = false;
  bool no_status = false;
  bool time_first_picture = false;   ///< Print how long the first picture took.
  std::string screenshot;            ///< Where a picture of the window goes at the end.
  std::optional<double> quit_after;  ///< Seconds.

  QSize WindowSize() const;
};

/// Declares the options on `app`, filling `options` when it is parsed.
void AddPlayerOptions(CLI::App& app, PlayerOptions& options);

}  // namespace orbelcast
