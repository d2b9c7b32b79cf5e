#pragma once

#include <QPointer>

#include "orbelcast/video_server_push_widget.h"
#include "platform/platform.h"
#include "player/full_screen_window.h"
#include "widgets/window_widget.h"

namespace orbelcast {

/// The window that a viewer fills.
class FullScreenWidget final : public WindowWidget {
 public:
  /// `window` and `platform` outlive the widget.
  FullScreenWidget(FullScreenWindow& window, Platform& platform, QWidget* parent);

  /// The viewer that fills it; null while it is closed. The one before may still be among its children, and is about to
  /// end.
  VideoServerPushWidget* Viewer() const { return viewer_; }

 protected:
  void Fill() override;
  void Empty() override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  FullScreenWindow& window_;
  Platform& platform_;
  QPointer<VideoServerPushWidget> viewer_;
};

}  // namespace orbelcast
