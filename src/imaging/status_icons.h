#pragma once

#include <cstdint>

#include "toolkit/surface.h"

namespace orbelcast {

/// The icons of the status strip. Recording and stop share the activity cell, connect and disconnect the connection
/// cell.
enum class StatusIcon : std::int16_t { kRecording = 0, kStop = 1, kConnect = 2, kDisconnect = 3 };

/// Empties the icon's cell on the strip and paints `picture` (16 × 16) there.
void PaintStatusIcon(Surface& strip, Color background, StatusIcon icon, const Surface& picture);

/// Empties the activity cell.
void EraseActivityIcon(Surface& strip, Color background);

}  // namespace orbelcast
