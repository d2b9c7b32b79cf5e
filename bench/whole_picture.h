#pragma once

#include <cstdint>

#include "viewer/video_server_push.h"

/// The watched rectangle and sensitivity of a host that wants to be told of everything.
namespace orbelcast::bench {

inline constexpr int kWholePicture = 100;
inline constexpr int kSensitivity = 80;

inline void WatchWholePicture(VideoServerPush& viewer) {
  viewer.MotionDetector(true);
  viewer.MotionArea_x2(kWholePicture);
  viewer.MotionArea_Y2(kWholePicture);
  std::int32_t sensitivity = kSensitivity;
  viewer.MotionSensivity(sensitivity);
}

}  // namespace orbelcast::bench
