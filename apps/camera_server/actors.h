#pragma once

#include "paint.h"

namespace orbelcast::camera_server {

/// Draws what moves, as it stands at `seconds`: clouds, smoke, birds, a walker, a ball and cars.
void DrawActors(cairo_t* cr, const Stage& stage, double seconds);

}  // namespace orbelcast::camera_server
