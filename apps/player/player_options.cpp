#include "player/player_options.h"

#include <QStringList>
#include <QUrl>
#include <algorithm>

#include "common/command_line.h"
#include "common/option_values.h"
#include "common/pixel_size.h"

namespace orbelcast {

namespace {

constexpr int kSmallestSide = 16;

std::string CheckSize(const std::string& text) {
  if (ReadPixelSize(text, kSmallestSide)) return {};
  return "a size is WIDTHxHEIGHT in pixels, 16x16 to 8192x8192, such as 640x480";
}

bool IsPictureAddress(const std::string& text) {
  return QString::fromStdString(text).startsWith(QLatin1String("http://"), Qt::CaseInsensitive);
}

std::string CheckUrl(const std::string& text) {
  return IsPictureAddress(text) ? std::string() : "the address must begin with http://";
}

std::string CheckPictureFile(const std::string& file) {
  if (!QString::fromStdString(file).endsWith(QLatin1String(".png"), Qt::CaseInsensitive)) {
    return "the file's name must end in .png";
  }
  return CheckWritable(file);
}

}  // namespace

bool PlayerOptions::NamesAPicture() const {
  return IsPictureAddress(camera);
}

bool PlayerOptions::ShowsServer() const {
  return (all || tour || kiosk) && mosaic.empty() && !NamesAPicture();
}

std::optional<QSize> PlayerOptions::WindowSize() const {
  const auto pixels = ReadPixelSize(size, kSmallestSide);
  return pixels ? std::optional(QSize(pixels->width, pixels->height)) : std::nullopt;
}

std::string CameraProblem(const std::string& text) {
  const bool server = !text.empty() && text.find("://") == std::string::npos &&
                      std::ranges::none_of(text, [](unsigned char c) { return c <= ' '; });
  if (server || IsPictureAddress(text)) return {};
  return "a camera server is HOST or HOST:PORT, such as 127.0.0.1:8080; "
         "a picture's address begins with http://, such as http://127.0.0.1:8080/live/1";
}

ServerAddress ParseServer(const std::string& text) {
  const std::size_t colon = text.rfind(':');
  const bool has_port = colon != std::string::npos && colon > 0 && colon + 1 < text.size() &&
                        text.find_first_not_of("0123456789", colon + 1) == std::string::npos;
  // More than one colon is an IPv6 address, whose port follows its bracket.
  const bool bare_v6 = has_port && text.find(':') != colon && text[colon - 1] != ']';
  if (!has_port || bare_v6) return {.server = text, .port = {}};
  return {.server = text.substr(0, colon), .port = text.substr(colon + 1)};
}

QString ShownAddress(const std::string& address) {
  const QString text = QString::fromStdString(address);
  const QUrl url(IsPictureAddress(address) ? text : QStringLiteral("http://") + text);
  QString place = url.host();
  if (url.port() != -1) place += QLatin1Char(':') + QString::number(url.port());
  const QStringList segments = url.path().split(QLatin1Char('/'), Qt::SkipEmptyParts);
  for (const QString& segment : segments) {
    if (segment.contains(QLatin1Char(':')) || segment.startsWith(QLatin1Char('$'))) break;
    place += QLatin1Char('/') + segment;
  }
  return place;
}

namespace {

/// The options of both windows; returns the camera's.
Option AddCommonOptions(CommandLine& app, PlayerOptions& options) {
  Option camera = app.AddText("CAMERA", options.camera,
                              "A camera server, HOST[:PORT]: opens the player. Or the whole address of a picture, "
                              "http://...: opens the viewer alone")
                      .Check(CameraProblem)
                      .ValueName("");
  app.AddFlag("--ask", options.ask, "Ask for the camera server in a window, where none is named here");
  AddAccessOptions(app, options.access, "User name for the camera server (default: none)");
  app.AddNumber("--frame-rate", options.frame_rate, 1, 30,
                "Pictures a second, 1 to 30; the player takes up to 25 and remembers it")
      .TakeLast()
      .ValueName("N");
  app.AddText("--size", options.size,
              "Size of the window in pixels, WIDTHxHEIGHT; without it the player's is the one it had last")
      .Check(CheckSize)
      .ValueName("WxH");
  Option quit_after =
      AddSecondsOption(app, "--quit-after", options.quit_after,
                       "End after S seconds; may have decimals (default: when closed)", kLongestTimeOut);
  app.AddText("--screenshot", options.screenshot,
              "At the end that --quit-after says, write a picture of the window to FILE, whose name ends in .png")
      .Check(CheckPictureFile)
      .Needs(quit_after)
      .ValueName("FILE");
  return camera;
}

/// The player's options, which go without a named camera; returns the live stream's.
Option AddOptionsOfPlayer(CommandLine& app, PlayerOptions& options, const Option& camera) {
  const std::string player = "Player";
  app.AddText("--device", options.device, "The camera to begin with, by its id on the server (default: the first)")
      .ValueName("ID")
      .Group(player);
  app.AddFlag("--extended", options.extended, "Show the buttons for log, messages, alerts, outputs, several cameras")
      .Group(player);
  Option live = app.AddText("--live-url", options.live_url,
                            "Without a server: the address of the live stream, beginning with http://")
                    .Check(CheckUrl)
                    .Excludes(camera)
                    .ValueName("URL")
                    .Group(player);
  app.AddText("--archive-url", options.archive_url, "Without a server: the address that archive steps are added to")
      .Check(CheckUrl)
      .Excludes(camera)
      .ValueName("URL")
      .Group(player);
  app.AddFlag("--start", options.start, "Show the stream of --live-url at once").Needs(live).Group(player);
  app.AddFlag("--fixed-layout", options.fixed_layout,
              "Keep everything at its first place and size, whatever the size of the window")
      .Group(player);
  return live;
}

void AddOptionsOfViewer(CommandLine& app, PlayerOptions& options, const Option& camera, const Option& live) {
  const std::string viewer = "Viewer alone";
  app.AddList("--mosaic", options.mosaic,
              "Show several cameras as a grid: their live addresses, each beginning with http://")
      .Check(CheckUrl)
      .Excludes(camera)
      .Excludes(live)
      .ValueName("URL ...")
      .Group(viewer);
  Option area = app.AddArea("--motion-area", options.motion_area,
                            "Watch this part of the picture for motion: x1,y1,x2,y2 in hundredths of its size")
                    .ValueName("x1,y1,x2,y2")
                    .Group(viewer);
  app.AddText("--motion-zones", options.motion_zones,
              "Watch 5 x 5 zones for motion: a character each, row by row, 0 leaves the zone out")
      .Excludes(area)
      .ValueName("MASK")
      .Group(viewer);
  AddSensitivityOption(app, options.sensitivity).Group(viewer);
  app.AddFlag("--show-motion", options.show_motion, "Show what the motion detection sees").Group(viewer);
  app.AddFlag("--auto-reconnect", options.auto_reconnect, "Go on trying when the camera does not answer").Group(viewer);
  app.AddFlag("--no-status", options.no_status, "Leave the status strip out").Group(viewer);
  app.AddFlag("--time-first-picture", options.time_first_picture,
              "Print the time from connecting to the first picture, in milliseconds")
      .Group(viewer);
}

void AddOptionsOfSeveral(CommandLine& app, PlayerOptions& options, const Option& live) {
  const std::string several = "Pictures alone";
  app.AddFlag("--all", options.all, "Show all cameras of the server as a grid; a double click on one shows it alone")
      .Excludes(live)
      .Group(several);
  app.AddNumber("--tour", options.tour, 1, kLongestTimeOut,
                "Show the cameras one after the other, each for S seconds, 1 or more")
      .ValueName("S")
      .Excludes(live)
      .Group(several);
  app.AddFlag("--kiosk", options.kiosk,
              "Nothing but pictures on the whole screen: no pointer, no menu; Ctrl+Q ends. Of a server all cameras, or "
              "the one that --device names")
      .Excludes(live)
      .Group(several);
}

}  // namespace

std::string CheckTogether(const PlayerOptions& options) {
  if (!options.NamesAPicture()) return {};
  if (options.all) return "--all needs a camera server, HOST[:PORT]; this is the address of one picture";
  if (options.tour) return "--tour needs a camera server or --mosaic; this is the address of one picture";
  return {};
}

void AddPlayerOptions(CommandLine& app, PlayerOptions& options) {
  const Option camera = AddCommonOptions(app, options);
  const Option live = AddOptionsOfPlayer(app, options, camera);
  AddOptionsOfSeveral(app, options, live);
  AddOptionsOfViewer(app, options, camera, live);
}

}  // namespace orbelcast
