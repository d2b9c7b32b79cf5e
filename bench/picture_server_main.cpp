// A camera for the benchmarks that are scripts: picture_server RATE COUNT [WIDTH HEIGHT]
//
// Prints its port and the time at which it began, in seconds of the system's monotonic clock, and serves until it is
// ended: picture n of COUNT, which carries its number (see NumberedFrames), is taken n / RATE after that time, the
// first again after the last.

#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "frame_pipeline_pictures.h"
#include "picture_server.h"

int main(int argc, char** argv) {
  if (argc != 3 && argc != 5) {
    std::fputs("usage: picture_server RATE COUNT [WIDTH HEIGHT]\n", stderr);
    return 2;
  }
  const int width = argc == 5 ? std::atoi(argv[3]) : 640;
  const int height = argc == 5 ? std::atoi(argv[4]) : 480;
  const orbelcast::bench::PictureServer server(orbelcast::bench::NumberedFrames(width, height, std::atoi(argv[2])),
                                               std::atof(argv[1]));
  std::printf("%d %.6f\n", server.Port(), std::chrono::duration<double>(server.Began().time_since_epoch()).count());
  std::fflush(stdout);
  for (;;) pause();
}
