#pragma once

#include <utility>

#include "adapters/clip_library/clip_library.h"
#include "adapters/curl/curl_http.h"
#include "adapters/fiber/fiber_loop.h"
#include "adapters/jpeg/jpeg_decoder.h"
#include "adapters/multipart/multipart_http.h"
#include "adapters/png/png_codec.h"
#include "adapters/posix/configuration_file.h"
#include "adapters/posix/file_registry.h"
#include "adapters/posix/own_folder.h"
#include "adapters/posix/posix_files.h"
#include "adapters/posix/system_clock.h"
#include "platform/platform.h"
#include "toolkit/pictures_on_demand.h"

namespace orbelcast {

/// The services that are the same with and without a toolkit, on an event queue, screen, clipboard and dialogs of the
/// caller's.
class Services {
 public:
  Services(EventQueue& queue, Screen& screen, Clipboard& clipboard, Dialogs& dialogs)
      : loop_(queue),
        platform_{.loop = loop_,
                  .clock = clock_,
                  .screen = screen,
                  .text_mapper = text_mapper_,
                  .files = files_,
                  .http = http_,
                  .jpeg_decoder = jpeg_decoder_,
                  .pictures = pictures_,
                  .clipboard = clipboard,
                  .device_contexts = device_contexts_,
                  .registry = registry_,
                  .dialogs = dialogs,
                  .avi_files = avi_files_,
                  .configuration = configuration_} {}
  ~Services() { EndHandlers(); }
  Services(const Services&) = delete;
  Services& operator=(const Services&) = delete;

  /// Ends the handlers that still wait, while everything that they use is there. Called first by an owner that adds
  /// services of its own to these.
  void EndHandlers() { loop_.EndHandlers(); }

  Platform& Get() { return platform_; }
  /// No other server is asked, from now on.
  void AskOnly(ServerRule rule) { curl_.AskOnly(std::move(rule)); }
  const FiberLoop& Loop() const { return loop_; }

 private:
  FiberLoop loop_;
  SystemClock clock_;
  TextMapper text_mapper_;
  PosixFiles files_;
  CurlHttp curl_{loop_};
  MultipartHttp http_{loop_, curl_};
  PicturesOnDemand jpeg_decoder_{std::make_shared<TurboJpegDecoder>()};
  PngCodec pictures_;
  DeviceContexts device_contexts_;
  FileRegistry registry_;
  ClipLibrary avi_files_{&OwnFolder};
  const Configuration configuration_ = LoadConfigurationOrSayWhy();
  Platform platform_;
};

}  // namespace orbelcast
