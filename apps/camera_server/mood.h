#pragma once

#include "colour.h"

namespace orbelcast::camera_server {

/// The time of day that a camera shows, and all that follows from it.
struct Mood {
  Colour sky_top{};
  Colour sky_bottom{};
  Colour far_hills{};
  Colour near_hills{};
  Colour light{};  ///< what falls on everything else
  Colour sun{};
  double sun_x{};  ///< share of the width
  double sun_y{};  ///< units from the top where the horizon is 244 below it
  double sun_radius{};
  Colour cloud{};
  double cloud_share{};  ///< opacity
  double mist{};         ///< 0 clear to 1 white
  double stars{};        ///< their opacity
  bool is_dark{};        ///< lamps, windows and headlights are on
};

/// A camera's own: camera 1 has noon, 2 dusk, 3 night, 4 a misty morning, and so on round.
const Mood& OwnMood(int camera);
/// That of the clock, `hour` being from 0 up to 24: night, a misty dawn, day, dusk and night again, one going over into
/// the next while sun and moon cross the sky.
Mood MoodAt(double hour);

}  // namespace orbelcast::camera_server
