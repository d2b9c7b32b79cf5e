// README.md shows this program: a viewer without a screen that prints where something moves.
// NOLINTBEGIN(bugprone-exception-escape): a call that is refused ends this program.
#include <orbelcast/headless.h>

#include <cstdio>

int main(int argc, char** argv) {
  orbelcast::headless::VideoServerPush viewer;
  viewer.Resize(640 * 15, 480 * 15);  // Twips: 15 a pixel.
  viewer.Events.MotionDetected = [](int x1, int y1, int x2, int y2) {
    std::printf("%d %d %d %d\n", x1, y1, x2, y2);
    std::fflush(stdout);
  };
  viewer.MotionDetector(true);
  viewer.MotionByZones(true);
  viewer.MotionSensivity(80);
  viewer.Connect(argc > 1 ? argv[1] : "http://127.0.0.1:8080/live/1");
  for (;;) viewer.HandleNext();
}
// NOLINTEND(bugprone-exception-escape)
