#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "toolkit/surface.h"

namespace orbelcast {

/// Settings of motion detection. Read anew at each sample: a host may change them in the middle of a scan.
struct MotionSettings {
  bool MotionByZones = false;
  std::string MotionString;        ///< One character a zone, zones 1 to 25; "0" excludes it.
  std::int32_t MotionArea_x1 = 0;  ///< The watched rectangle in thumbnail units, 0 to 100 on each axis.
  std::int32_t MotionArea_x2 = 0;
  std::int32_t MotionArea_y1 = 0;
  std::int32_t MotionArea_Y2 = 0;
  std::int32_t Threshold = 0;  ///< Grey difference in percent of 256 from which a sample is motion, 0 to 255.
};

/// The place where a scan found motion, in thumbnail pixels. X1 is the column of the first sample found, not the
/// leftmost one.
struct MotionFound {
  std::int32_t X1 = -1;
  std::int32_t Y1 = -1;
  std::int32_t X2 = 0;
  std::int32_t Y2 = 0;
  std::int16_t Area = -1;  ///< Zone of the first sample found, 1 to 25; −1 outside zone mode.

  bool Any() const { return X1 != -1 || Y1 != -1; }
};

/// Grey level, 0 to 254, of a colour as Surface::Point gives it; 0 for a pixel outside the picture.
std::int32_t GrayLevel(Color color);

/// The threshold for a sensitivity in percent. `sensitivity` becomes 100 minus itself (limited to 100
/// first).
std::int32_t MotionThreshold(std::int32_t& sensitivity);

/// Compares `current`, a 100 × 100 thumbnail of the newest frame, with the grey levels of the previous one in
/// `reference` on a grid of 23 × 24 samples 4 pixels apart. Updates `reference`, paints every sample's class into
/// `overlay` and, where there was motion, the outline of its box.
///
/// `after_sample` is called after each of the 552 samples (a place to yield); it answers false to end the scan at once,
/// and then nothing is returned. The three surfaces must stay alive.
std::optional<MotionFound> ScanMotion(const Surface& current, Surface& reference, Surface& overlay,
                                      const MotionSettings& settings, const std::function<bool()>& after_sample);

}  // namespace orbelcast
