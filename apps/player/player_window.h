#pragma once

#include <QMainWindow>
#include <QTimer>

#include "adapters/http/yielding_http.h"
#include "orbelcast/player_widget.h"
#include "player/notice.h"
#include "player/player_options.h"

namespace orbelcast {

/// The player as a program's window. A notice in the window tells of the server's state (waiting for it, why it cannot
/// be reached), which the player itself does not show.
class PlayerWindow final : public QMainWindow {
  Q_OBJECT

 public:
  /// `requests` are those of `platform`; both outlive the window.
  PlayerWindow(Platform& platform, YieldingHttp& requests, const PlayerOptions& options);

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void Configure();
  void TakeSize();
  void AddShortcuts();
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
  /// The server's problem, for people; empty where there is none.
  QString Problem() const;

  PlayerOptions options_;
  PlayerWidget* player_;
  Notice* notice_;
  QTimer patience_;  // until a wait is worth a notice
  YieldingHttp::Outcome outcome_{.answered = false, .status = 0};
  bool chosen_ = false;
  std::vector<Connection> connections_;
  Connection device_chosen_;
};

}  // namespace orbelcast
