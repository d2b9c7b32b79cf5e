#pragma once

#include <QMainWindow>

#include "orbelcast/video_server_push_widget.h"
#include "platform/signal.h"
#include "player_options.h"

namespace orbelcast {

/// One camera in a window: the stream viewer fills it.
class ViewerWindow final : public QMainWindow {
  Q_OBJECT

 public:
  ViewerWindow(Platform& platform, const PlayerOptions& options);

  /// Starts the stream as soon as the loop runs.
  void Start();

 private:
  void Configure();
  void AddShortcuts();
  void TimeFirstPicture();

  PlayerOptions options_;
  VideoServerPushWidget* viewer_;
  Connection first_picture_;
};

}  // namespace orbelcast
