#pragma once

#include <string>

#include "camera_server/settings.h"

namespace orbelcast::camera_server {

enum class Mark { kNone, kRecording, kArchive };

/// What a drawn picture shows.
struct View {
  int camera = 1;  ///< gives the landscape, its colours and its own time of day
  std::string name{};
  WallClock::time_point time{};  ///< what the clock shows, and where things are that move
  Mark mark = Mark::kNone;
  Light light = Light::kOwn;
};

/// A lake with a sailing boat under the camera's name and a clock, as a baseline JPEG with 4:2:0 colour. Throws
/// std::exception.
std::string DrawJpeg(const View& view, const PictureForm& form);

}  // namespace orbelcast::camera_server
