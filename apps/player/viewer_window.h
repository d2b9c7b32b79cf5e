#pragma once

#include <QMainWindow>
#include <QTimer>

#include "orbelcast/video_server_push_widget.h"
#include "player/camera_show.h"
#include "player/full_screen.h"
#include "player/login.h"
#include "player/notice.h"
#include "player/player_options.h"
#include "toolkit/signal.h"

namespace orbelcast {

/// One camera in a window, or several of a server or of addresses: the stream viewer fills it. A notice in the window
/// tells of a single camera's state: waiting for it, or why it cannot be seen.
class ViewerWindow final : public QMainWindow {
  Q_OBJECT

 public:
  ViewerWindow(Platform& platform, const PlayerOptions& options);

  /// Starts the stream as soon as the loop runs.
  void Start();

 private:
  /// Prepares for several cameras, where the options ask for such.
  void MakeShow();
  void FillScreen();
  void Configure();
  void AddShortcuts();
  void TellOfCamera();
  void TimeFirstPicture();
  /// The stream runs, or has failed to begin.
  void OnStarted();
  void OnConnected();
  /// Shows the cameras, having asked the server for them where that was not done yet.
  void ShowCameras();
  void TellOfServer(const QString& problem);
  int FirstCamera() const;
  /// The name of the picture that is shown, for a person.
  QString Name() const;
  /// Why there is no picture, for a person.
  QString WhyNoPicture();

  Platform& platform_;
  PlayerOptions options_;
  VideoServerPushWidget* viewer_;
  Notice* notice_;
  Login* login_;
  FullScreen* full_screen_ = nullptr;  // null: a kiosk, which is not left by keys
  CameraShow* show_ = nullptr;         // null: one picture's address
  QTimer patience_;                    // until a wait is worth a notice
  QTimer retry_;                       // until a camera that has not answered yet is tried again
  int starts_ = 0;
  bool showing_ = false;  // the cameras were shown once
  Connection first_picture_;
};

}  // namespace orbelcast
