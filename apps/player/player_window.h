#pragma once

#include <QMainWindow>
#include <QTimer>

#include "orbelcast/player_widget.h"
#include "player/first_choices.h"
#include "player/full_screen.h"
#include "player/login.h"
#include "player/notice.h"
#include "player/player_options.h"
#include "widgets/qt_platform.h"

namespace orbelcast {

/// The player as a program's window. A notice in the window tells of the server's state (waiting for it, why it cannot
/// be reached), which the player itself does not show.
class PlayerWindow final : public QMainWindow {
  Q_OBJECT

 public:
  /// `platform` outlives the window.
  PlayerWindow(QtPlatform& platform, const PlayerOptions& options);

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void Configure();
  void TakeSize(const Screen& screen);
  void AddCommands(Platform& platform);
  /// Makes the objects that tell of the picture: its state, its age, its failures.
  void WatchPicture(QtPlatform& platform);
  /// Of the viewer over the whole screen, as long as that is there.
  void WatchFullScreen(VideoServerPushWidget& viewer, const Screen& screen);
  void WatchRequests(YieldingHttp& requests);
  /// Asks the server again, and connects again with the camera that is chosen.
  void LoadAgain();
  void OnLoaded();
  void ChooseFirst();
  /// The camera that was asked for, or was chosen before, is not among the server's.
  bool LacksDevice() const;
  void TellOfDevice();
  /// Its name in the list.
  QString ChosenCamera() const;
  void ShowTitle();
  /// The server has no cameras for this window, with an answer of this kind or another.
  bool LacksServer() const;
  bool RefusesLogin() const;
  /// The problem of a server that is lacking, for people.
  QString Problem() const;

  PlayerOptions options_;
  const FirstChoices first_choices_;
  PlayerWidget* player_;
  Notice* notice_;
  Login* login_;
  FullScreen* full_screen_;
  QTimer patience_;  // until a wait is worth a notice
  YieldingHttp::Outcome outcome_{.answered = false, .status = 0};
  bool chosen_ = false;
  std::vector<Connection> connections_;
  Connection device_chosen_;
};

}  // namespace orbelcast
