#include "settings.h"

#include <algorithm>
#include <chrono>

#include "bounds.h"

namespace orbelcast::camera_server {

PictureForm PictureForm::Bounded() const {
  return {.width = std::clamp(width, kMinSide, kMaxWidth),
          .height = std::clamp(height, kMinSide, kMaxHeight),
          .quality = std::clamp(quality, kMinQuality, kMaxQuality)};
}

bool Settings::IsRecording(int camera, WallClock::time_point time) const {
  constexpr int kSeconds = 10;
  if (recording != Recording::kAlternate) return recording == Recording::kYes;
  const auto seconds = std::chrono::floor<std::chrono::seconds>(time).time_since_epoch().count();
  return (seconds / kSeconds + camera) % 2 != 0;
}

}  // namespace orbelcast::camera_server
