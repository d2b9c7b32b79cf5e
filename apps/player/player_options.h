#pragma once

#include <QSize>
#include <QString>
#include <array>
#include <optional>
#include <string>
#include <vector>

#include "common/access.h"

namespace orbelcast {

class CommandLine;

/// The options of the player program.
struct PlayerOptions {
  /// A camera server, as HOST or HOST:PORT: the player opens. Or the whole address of a picture, beginning with
  /// http://: the viewer alone opens. Empty: the player opens on `live_url` and `archive_url`.
  std::string camera;
  std::vector<std::string> mosaic;  ///< Live addresses of cameras that the viewer alone shows as a grid.
  Access access;
  std::optional<int> frame_rate;     ///< Pictures a second, 1 to 30; of the player 1 to 25.
  std::string size;                  ///< The window's, in pixels; empty is the one it had last, or the usual one.
  std::string screenshot;            ///< The file for a picture of the window at the end.
  std::optional<double> quit_after;  ///< Seconds.
  bool ask = false;                  ///< Ask the user for the camera where none is named.

  // Several cameras of a server, or of `mosaic`, in the viewer's window.
  bool all = false;            ///< All cameras of the server as a grid.
  std::optional<double> tour;  ///< Seconds that each camera is shown for, one after the other.
  bool kiosk = false;          ///< Nothing but pictures on the whole screen.

  // The player's.
  std::string device;     ///< The camera's id on the server; empty is the first of the list.
  bool extended = false;  ///< The extended buttons are shown.
  std::string live_url;
  std::string archive_url;
  bool start = false;  ///< Show the stream of `live_url` at once.
  bool fixed_layout = false;

  // The viewer's.
  std::optional<std::array<int, 4>> motion_area;  ///< x1, y1, x2, y2 in hundredths of the picture.
  std::optional<std::string> motion_zones;        ///< One character a zone, "0" excludes it.
  int sensitivity = 80;                           ///< Percent.
  bool show_motion = false;
  bool auto_reconnect = false;
  bool no_status = false;
  bool time_first_picture = false;  ///< Print how long the first picture took.

  bool NamesACamera() const { return !camera.empty() || !live_url.empty() || !mosaic.empty(); }
  /// One picture's address is named, not a server.
  bool NamesAPicture() const;
  /// The viewer's window is wanted, with the server's cameras.
  bool ShowsServer() const;
  bool ShowsViewer() const { return NamesAPicture() || ShowsServer() || !mosaic.empty(); }
  /// The window's size; nothing where none was asked for.
  std::optional<QSize> WindowSize() const;
};

/// A camera server as the player takes it.
struct ServerAddress {
  std::string server;
  std::string port;  ///< Empty where none is named.
};

/// Takes HOST, HOST:PORT or [IPV6]:PORT apart. Any other text, such as a host with a path, is taken as the server as a
/// whole.
ServerAddress ParseServer(const std::string& text);

/// The fault in a camera server's or a picture's address, for people; empty where there is none.
std::string CameraProblem(const std::string& text);

/// The mistake in options that are right by themselves; empty where there is none.
std::string CheckTogether(const PlayerOptions& options);

/// The address as a window may show it: without a user's name and password, in any part of it.
QString ShownAddress(const std::string& address);

/// Declares the options on `app`, filling `options` when it is parsed.
void AddPlayerOptions(CommandLine& app, PlayerOptions& options);

}  // namespace orbelcast
