// README.md shows this program: a viewer without a screen that prints where something moves.
#include <cstdio>

#include "assembly/headless_platform.h"
#include "viewer/video_server_push.h"

int main() {
  orbelcast::HeadlessPlatform platform;
  const auto viewer = orbelcast::VideoServerPush::Create(platform.Get());
  viewer->Resize(640 * 15, 480 * 15);  // Twips: 15 a pixel.
  viewer->Events.MotionDetected.Listen([](int x1, int y1, int x2, int y2) { std::printf("%d %d %d %d\n", x1, y1, x2, y2); });
  viewer->MotionDetector(true);
  viewer->MotionByZones(true);
  std::int32_t sensitivity = 80;
  viewer->MotionSensivity(sensitivity);
  viewer->Connect("http://127.0.0.1:8080/live/1");
  for (;;) platform.Get().loop.Queue().HandleNext();
}
