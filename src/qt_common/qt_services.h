#pragma once

#include <QCoreApplication>
#include <memory>

#include "adapters/http/yielding_http.h"
#include "assembly/services.h"
#include "qt_common/qt_clipboard.h"
#include "qt_common/qt_queue.h"
#include "qt_common/qt_screen.h"

namespace orbelcast {

/// The platform of a Qt application: Qt's loop, screen and clipboard. Made after the application, on its thread, and
/// destroyed before it; what is made on it is destroyed first.
class QtServices {
 public:
  /// Nobody answers the controls' questions.
  QtServices() : QtServices(nobody_) {}
  /// `dialogs`, which outlives the platform, does.
  explicit QtServices(Dialogs& dialogs) : services_(queue_, screen_, clipboard_, dialogs) {}
  ~QtServices() { services_.EndHandlers(); }
  QtServices(const QtServices&) = delete;
  QtServices& operator=(const QtServices&) = delete;

  Platform& Get() { return platform_; }
  /// The requests of everything on this platform: no request holds up the window that it is made from.
  YieldingHttp& Requests() { return http_; }

 private:
  QtQueue queue_;
  QtScreen screen_;
  QtClipboard clipboard_;
  Dialogs nobody_;
  Services services_;
  YieldingHttp http_{services_.Get().http};
  Platform platform_{services_.Get().With(http_)};
};

/// The platform that all of an application share, made for the first that asks. `Maker` has a `Get`, as QtServices has.
template <typename Maker>
std::shared_ptr<Platform> SharedPlatform() {
  if (QCoreApplication::instance() == nullptr) qFatal("Orbelcast: there is no application yet");
  // Never destroyed itself: a program may exit without its application's end.
  static auto& shared = *new std::shared_ptr<Maker>;
  if (!shared) {
    shared = std::make_shared<Maker>();
    // Ends just before the application does. What outlives that keeps the services alive.
    qAddPostRoutine([] { shared.reset(); });
  }
  return {shared, &shared->Get()};
}

}  // namespace orbelcast
