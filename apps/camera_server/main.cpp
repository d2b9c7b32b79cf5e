/// orbelcast-camera-server: cameras to try viewers against, and to test them with.
///
/// The folder's parts, from the wire inwards: connection (one socket), http_message (requests and answers as bytes),
/// http_server (a thread a client), router (which request gets what), live_address, login_base and archive_query (what
/// addresses say), commands (what stands behind a login base), control (what tests steer with), info_text and home_page
/// (what the server says of itself), site (outputs, inputs, alerts), archive (where a client is in it), activity_log
/// and request_log, pictures (drawn or from a folder; scene, scenery, actors, mood, overlay and paint draw, jpeg_writer
/// encodes). bounds.h holds every bound.

#include <cairo.h>
#include <fontconfig/fontconfig.h>
#include <sys/signalfd.h>
#include <unistd.h>
#include <CLI/CLI.hpp>

#include <csignal>
#include <exception>
#include <iostream>
#include <memory>
#include <stdexcept>

#include "exit_status.h"
#include "faults.h"
#include "http_server.h"
#include "options.h"
#include "pictures.h"
#include "program.h"
#include "request_log.h"
#include "router.h"

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

int Serve(const Settings& settings) {
  const int end = WatchForEnd();
  const FontKeeper fonts;
  const std::unique_ptr<PictureSource> pictures = MakePictureSource(settings);
  FaultPlan faults;
  for (const auto& [camera, fault] : settings.faults) PlanFault(settings, camera, fault, faults);
  RequestLog requests(settings.log_file,
                      settings.shows_passwords ? RequestLog::Credentials::kShown : RequestLog::Credentials::kMasked);
  Site site(settings);
  Archive archive(settings);
  ActivityLog activity;
  Router router({.settings = settings,
                 .pictures = *pictures,
                 .faults = faults,
                 .site = site,
                 .archive = archive,
                 .activity = activity},
                requests);
  HttpServer server(kServerName, router);
  server.Listen(settings.address, settings.port);
  std::cout << "listening on " << server.Url() << std::endl;  // flushed: somebody waits for the line
  if (!std::cout)
    throw std::runtime_error("cannot write to standard output; is the disk full, or has its reader gone?");
  server.Run(end);
  close(end);
  return kEndedBySignal;
}

}  // namespace

int main(int argc, char** argv) {
  orbelcast::SurviveFailedWrites();
  Options options;
  try {
    options.Parse(argc, argv);
    return Serve(options.Result());
  } catch (const CLI::ParseError& error) {
    return orbelcast::EndOutput("orbelcast-camera-server", options.Report(error));
  } catch (const std::exception& error) {
    std::cerr << "orbelcast-camera-server: " << error.what() << '\n';
    return kCannotServe;
  }
}
