#pragma once

#include "adapters/http/yielding_http.h"
#include "assembly/services.h"
#include "widgets/qt_clipboard.h"
#include "widgets/qt_dialogs.h"
#include "widgets/qt_queue.h"
#include "widgets/qt_screen.h"

namespace orbelcast {

/// The platform of a Qt application: Qt's loop, screen, clipboard and dialogs. Made after the QApplication, on its
/// thread, and destroyed before it; the widgets made on it are destroyed first.
class QtPlatform {
 public:
  QtPlatform() { dialogs_.WaitOn(services_.Get().loop); }
  ~QtPlatform() { services_.EndHandlers(); }
  QtPlatform(const QtPlatform&) = delete;
  QtPlatform& operator=(const QtPlatform&) = delete;

  Platform& Get() { return platform_; }

  /// The requests of everything on this platform: no request holds up the window that it is made from.
  YieldingHttp& Requests() { return http_; }
  /// The questions that are asked on this platform.
  QtDialogs& Questions() { return dialogs_; }

 private:
  QtQueue queue_;
  QtScreen screen_;
  QtClipboard clipboard_;
  QtDialogs dialogs_;
  Services services_{queue_, screen_, clipboard_, dialogs_};
  YieldingHttp http_{services_.Get().http};
  Platform platform_{services_.Get().With(http_)};
};

}  // namespace orbelcast
