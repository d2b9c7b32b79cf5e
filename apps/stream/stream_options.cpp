#include "stream/stream_options.h"

#include "viewer/video_server_push.h"

namespace orbelcast {

void Configure(VideoServerPush& viewer, const StreamOptions& options) {
  viewer.Username(options.access.user);
  viewer.Password(options.access.password);
  std::int16_t frame_rate = options.frame_rate;
  viewer.FrameRate(frame_rate);
  viewer.AutoReconnect(options.auto_reconnect);
  if (options.motion_area) {
    const auto& [x1, y1, x2, y2] = *options.motion_area;
    viewer.MotionArea_x1(x1);
    viewer.MotionArea_y1(y1);
    viewer.MotionArea_x2(x2);
    viewer.MotionArea_Y2(y2);
  }
  if (options.motion_zones) {
    viewer.MotionString(*options.motion_zones);
    viewer.MotionByZones(true);
  }
  std::int32_t sensitivity = options.sensitivity;
  viewer.MotionSensivity(sensitivity);
  viewer.MotionDetector(options.Motion());
}

}  // namespace orbelcast
