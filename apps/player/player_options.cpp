#include "player_options.h"

#include <cstdio>

namespace orbelcast {

namespace {

constexpr int kSmallestSide = 16;
constexpr int kLargestSide = 8192;

QSize ParseSize(const std::string& text) {
  int width = 0;
  int height = 0;
  char rest = 0;
  if (std::sscanf(text.c_str(), "%d%*1[xX]%d%c", &width, &height, &rest) != 2) return {};
  return {width, height};
}

std::string CheckSize(const std::string& text) {
  const QSize size = ParseSize(text);
  const bool good = size.width() >= kSmallestSide && size.height() >= kSmallestSide && size.width() <= kLargestSide &&
                    size.height() <= kLargestSide;
  return good ? std::string() : "a size is WIDTHxHEIGHT in pixels, 16x16 to 8192x8192, such as 640x480";
}

std::string CheckUrl(const std::string& text) {
  const bool http = QString::fromStdString(text).startsWith(QLatin1String("http://"), Qt::CaseInsensitive);
  return http ? std::string() : "the address must begin with http://, such as http://127.0.0.1:8080/live/1";
}

}  // namespace

QSize PlayerOptions::WindowSize() const {
  return ParseSize(size);
}

void AddPlayerOptions(CLI::App& app, PlayerOptions& options) {
  app.add_option("URL", options.url, "The whole address of the camera's picture")->required()->check(CheckUrl);
  app.add_option("--user", options.user, "User name for the camera server")->envname("ORBELCAST_USER");
  app.add_option("--password", options.password,
                 "Password; better given in the environment, where other users do not see it")
      ->envname("ORBELCAST_PASSWORD");
  app.add_option("--frame-rate", options.frame_rate, "Pictures a second, 1 to 30")
      ->check(CLI::Range(1, 30))
      ->capture_default_str();
  app.add_option("--size", options.size, "Size of the window in pixels, WIDTHxHEIGHT")
      ->check(CheckSize)
      ->capture_default_str();
  auto* area = app.add_option("--motion-area", options.motion_area,
                              "Watch this part of the picture for motion: x1,y1,x2,y2 in hundredths of its size")
                   ->delimiter(',');
  app.add_option("--motion-zones", options.motion_zones,
                 "Watch 5 x 5 zones for motion: a character each, row by row, 0 leaves the zone out")
      ->excludes(area);
  app.add_option("--sensitivity", options.sensitivity, "Sensitivity of the motion detection in percent, 0 to 100")
      ->check(CLI::Range(0, 100))
      ->capture_default_str();
  app.add_flag("--show-motion", options.show_motion, "Show what the motion detection sees");
  app.add_flag("--auto-reconnect", options.auto_reconnect, "Go on trying when the camera does not answer");
  app.add_flag("--no-status", options.no_status, "Leave the status strip out");
  app.add_flag("--time-first-picture", options.time_first_picture,
               "Print the time from connecting to the first picture, in milliseconds");
  app.add_option("--screenshot", options.screenshot, "Write a picture of the window to this file at the end (.png)");
  app.add_option("--quit-after", options.quit_after, "End after this many seconds")->check(CLI::PositiveNumber);
}

}  // namespace orbelcast
