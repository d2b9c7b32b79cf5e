// The first picture in C++ without a screen: headless ADDRESS FILE
#include <orbelcast/headless.h>

// NOLINTNEXTLINE(bugprone-exception-escape): a call that is refused ends this program.
int main(int, char** argv) {
  orbelcast::headless::VideoServerPush viewer;
  viewer.Connect(argv[1], true);  // one picture, no stream
  viewer.SaveImage(argv[2]);
}
