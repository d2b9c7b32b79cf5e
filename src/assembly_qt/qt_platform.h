#pragma once

#include "adapters/qt/mirrors.h"
#include "adapters/qt/qt_clipboard.h"
#include "adapters/qt/qt_queue.h"
#include "assembly/services.h"

namespace orbelcast {

/// The platform of a Qt application: Qt's loop, screen and clipboard. Made after the QApplication, on its thread, and
/// destroyed before it; the widgets made on it are destroyed first.
class QtPlatform {
 public:
  Platform& Get() { return services_.Get(); }

 private:
  QtQueue queue_;
  QtScreen screen_;
  QtClipboard clipboard_;
  Dialogs dialogs_;
  Services services_{queue_, screen_, clipboard_, dialogs_};
};

}  // namespace orbelcast
