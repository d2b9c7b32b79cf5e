#include "imaging/motion.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <limits>

#include "toolkit/rounding.h"

namespace orbelcast {

namespace {

/// Pixels between two samples, and the side of the square that one sample represents.
constexpr int kStep = 4;
/// The grid ends before these coordinates. Its last rows are below the 82 rows of the thumbnails, where all is level 0.
constexpr int kGridWidth = 92;
constexpr int kGridHeight = 96;
/// Side of a zone in pixels; zones count row by row.
constexpr int kZoneSide = 20;
constexpr int kZonesPerRow = 5;

constexpr Color kBoxColor = Rgb(128, 128, 0);

/// Parts of 255 that each colour has in the grey level.
constexpr int kRedWeight = 76;
constexpr int kGreenWeight = 150;
constexpr int kBlueWeight = 28;
constexpr int kWeightScale = 255;

enum class Watch { kExcluded, kOutside, kWatched };

int ZoneOf(int x, int y) {
  return 1 + x / kZoneSide + kZonesPerRow * (y / kZoneSide);
}

Watch WatchByZone(const MotionSettings& settings, int zone) {
  const auto place = static_cast<std::size_t>(zone - 1);
  const bool masked = place < settings.MotionString.size() && settings.MotionString[place] == '0';
  return masked ? Watch::kExcluded : Watch::kWatched;
}

bool IsFullPicture(const MotionSettings& settings) {
  return settings.MotionArea_x1 == 0 && settings.MotionArea_x2 == 100 && settings.MotionArea_y1 == 0 &&
         settings.MotionArea_Y2 == 100;
}

Watch WatchByRectangle(const MotionSettings& settings, int x, int y) {
  // The bottom edge is not compared: pixels below it are watched.
  const bool outside = x <= settings.MotionArea_x1 || x >= settings.MotionArea_x2 || y <= settings.MotionArea_y1;
  if (!outside) return Watch::kWatched;
  return y >= settings.MotionArea_Y2 || !IsFullPicture(settings) ? Watch::kExcluded : Watch::kOutside;
}

/// Fills the square of a sample. Most are inside the surface and of one size, which is known here.
void FillSample(Surface& surface, int x, int y, Color color) {
  if (x + kStep > surface.Width() || y + kStep > surface.Height()) {
    surface.FillBox(x, y, x + kStep - 1, y + kStep - 1, color);
    return;
  }
  const std::ptrdiff_t width = surface.Width();
  const std::uint32_t pixel = PixelOf(color);
  std::uint32_t* row = surface.MutablePixels().data() + y * width + x;
  for (int i = 0; i < kStep; ++i, row += width) std::fill_n(row, kStep, pixel);
}

void Note(MotionFound& found, int x, int y) {
  if (found.X1 == -1) found.X1 = x;
  if (x > found.X2) found.X2 = x;
  if (found.Y1 == -1) found.Y1 = y;
  found.Y2 = y;
}

void Sample(const Surface& current, Surface& reference, Surface& overlay, const MotionSettings& settings, int x, int y,
            MotionFound& found) {
  const int level = GrayLevel(current.Point(x, y));
  const int before = GrayLevel(reference.Point(x, y));
  FillSample(reference, x, y, Rgb(level, level, level));
  const int difference = std::abs(level - before) * 100 / 256;

  const Watch watch = settings.MotionByZones ? WatchByZone(settings, ZoneOf(x, y)) : WatchByRectangle(settings, x, y);
  Color color = Rgb(before, before, 0);
  if (watch == Watch::kExcluded) {
    color = Rgb(0, before, 0);
  } else if (watch == Watch::kWatched && difference >= settings.Threshold) {
    color = Rgb(before, 0, 0);
    Note(found, x, y);
    if (settings.MotionByZones && found.Area == -1) found.Area = static_cast<std::int16_t>(ZoneOf(x, y));
  }
  FillSample(overlay, x, y, color);
}

}  // namespace

std::int32_t GrayLevel(Color color) {
  if (color == kNoColor) return 0;
  const int sum = RedOf(color) * kRedWeight + GreenOf(color) * kGreenWeight + BlueOf(color) * kBlueWeight;
  // To the nearest: of a sum divided by an odd number none lies halfway.
  return (sum + kWeightScale / 2) / kWeightScale;
}

std::int32_t MotionThreshold(std::int32_t& sensitivity) {
  const std::int64_t opposite = 100 - static_cast<std::int64_t>(std::min(sensitivity, 100));
  sensitivity = static_cast<std::int32_t>(std::min<std::int64_t>(opposite, std::numeric_limits<std::int32_t>::max()));
  return std::clamp(RoundToEven(static_cast<double>(opposite) * 100 / 256), 0, 255);
}

std::optional<MotionFound> ScanMotion(const Surface& current, Surface& reference, Surface& overlay,
                                      const MotionSettings& settings, const std::function<bool()>& after_sample) {
  MotionFound found;
  for (int y = 0; y < kGridHeight; y += kStep) {
    for (int x = 0; x < kGridWidth; x += kStep) {
      Sample(current, reference, overlay, settings, x, y, found);
      if (!after_sample()) return std::nullopt;
    }
  }
  if (found.Any()) overlay.OutlineBox(found.X1, found.Y1, found.X2, found.Y2, kBoxColor);
  return found;
}

}  // namespace orbelcast
