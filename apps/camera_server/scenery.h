#pragma once

#include "paint.h"

namespace orbelcast::camera_server {

/// Draws what stands still: sky, hills, meadow, house, trees, fence, road.
void DrawScenery(cairo_t* cr, const Stage& stage);

/// Where the house's chimney ends, in units; smoke comes out of it.
struct Place {
  double x;
  double y;
};
Place Chimney(const Stage& stage);

/// The foot of the street lamp, which stands in front of who walks by.
void DrawStreetLamp(cairo_t* cr, const Stage& stage);

}  // namespace orbelcast::camera_server
