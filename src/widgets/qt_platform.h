#pragma once

#include "qt_common/qt_services.h"
#include "widgets/qt_dialogs.h"

namespace orbelcast {

/// The platform of an application with widgets: Qt's services and dialogs. Made after the QApplication, on its thread,
/// and destroyed before it; the widgets made on it are destroyed first.
class QtPlatform {
 public:
  QtPlatform() { dialogs_.WaitOn(Get().loop); }
  QtPlatform(const QtPlatform&) = delete;
  QtPlatform& operator=(const QtPlatform&) = delete;

  Platform& Get() { return services_.Get(); }

  /// The requests of everything on this platform: no request holds up the window that it is made from.
  YieldingHttp& Requests() { return services_.Requests(); }
  /// The questions that are asked on this platform.
  QtDialogs& Questions() { return dialogs_; }

 private:
  QtDialogs dialogs_;
  QtServices services_{dialogs_};
};

}  // namespace orbelcast
