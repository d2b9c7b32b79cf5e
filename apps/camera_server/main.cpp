/// orbelcast-camera-server: cameras to try viewers against, and to test them with.

#include <cairo.h>
#include <fontconfig/fontconfig.h>
#include <sys/signalfd.h>

#include <csignal>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <memory>
#include <variant>

#include "adapters/posix/descriptor.h"
#include "camera_server/http_server.h"
#include "camera_server/options.h"
#include "camera_server/services.h"
#include "common/program.h"

namespace {

using namespace orbelcast;
using namespace camera_server;

/// A descriptor that becomes readable when the program is asked to end. Made before any thread, so that none of them is
/// interrupted instead.
int WatchForEnd() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGINT);
  sigaddset(&signals, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  return signalfd(-1, &signals, SFD_CLOEXEC);
}

void Serve(const Settings& settings) {
  const Descriptor end(WatchForEnd());
  // Gives back, after all drawing, what Cairo and the font library keep for the whole program, so that a leak checker
  // reports real leaks only.
  const std::shared_ptr<void> fonts(nullptr, [](void*) {
    cairo_debug_reset_static_data();
    FcFini();
  });
  Services services(settings);
  Router router(services);
  ServeHttp(router, settings.address, settings.port, end.Number());
}

}  // namespace

int main(int argc, char** argv) {
  SurviveFailedWrites();
  try {
    const auto read = ReadCommandLine(argc, argv);
    if (const int* const status = std::get_if<int>(&read)) {
      return EndOutput("orbelcast-camera-server", *status);
    }
    Serve(std::get<Settings>(read));
    return EXIT_SUCCESS;
  } catch (const std::exception& error) {
    std::cerr << "orbelcast-camera-server: " << error.what() << '\n';
    return EXIT_FAILURE;  // such as an address that is taken or not ours, or a folder without pictures
  }
}
