/// orbelcast-camera-server: cameras to try viewers against, and to test them with.

#include <cairo.h>
#include <fontconfig/fontconfig.h>
#include <sys/signalfd.h>
#include <unistd.h>
#include <CLI/CLI.hpp>

#include <csignal>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <stdexcept>

#include "camera_server/http_server.h"
#include "camera_server/options.h"
#include "camera_server/router.h"
#include "camera_server/services.h"
#include "common/program.h"

namespace {

using namespace orbelcast::camera_server;

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

/// Gives back, after all drawing, what Cairo and the font library keep for the whole program, so that a leak checker
/// reports real leaks only.
struct FontKeeper {
  FontKeeper() = default;
  FontKeeper(const FontKeeper&) = delete;
  FontKeeper& operator=(const FontKeeper&) = delete;
  ~FontKeeper() {
    cairo_debug_reset_static_data();
    FcFini();
  }
};

void Serve(const Settings& settings) {
  const int end = WatchForEnd();
  const FontKeeper fonts;
  Services services(settings);
  Router router(services);
  HttpServer server(kServerName, router);
  server.Listen(settings.address, settings.port);
  std::cout << "listening on " << server.Url() << std::endl;  // flushed: somebody waits for the line
  if (!std::cout)
    throw std::runtime_error("cannot write to standard output; is the disk full, or has its reader gone?");
  server.Run(end);
  close(end);
}

}  // namespace

int main(int argc, char** argv) {
  orbelcast::SurviveFailedWrites();
  Options options;
  try {
    options.Parse(argc, argv);
    Serve(options.Result());
    return EXIT_SUCCESS;
  } catch (const CLI::ParseError& error) {
    return orbelcast::EndOutput("orbelcast-camera-server", options.Report(error));
  } catch (const std::exception& error) {
    std::cerr << "orbelcast-camera-server: " << error.what() << '\n';
    return EXIT_FAILURE;  // such as an address that is taken or not ours, or a folder without pictures
  }
}
