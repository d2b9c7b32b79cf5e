#pragma once

#include <string>

#include "paint.h"
#include "time_text.h"

namespace orbelcast::camera_server {

enum class OverlayMark { kNone, kRecording, kArchive };

/// What a camera writes into its picture.
struct OverlayText {
  std::string name;
  WallClock::time_point time;
  OverlayMark mark = OverlayMark::kNone;
};

/// Draws the panel with name, clock and date, on a context in pixels of a picture of `width` by `height`.
void DrawOverlay(cairo_t* cr, int width, int height, const OverlayText& text);

}  // namespace orbelcast::camera_server
