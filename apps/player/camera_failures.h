#pragma once

#include <QString>
#include <functional>

#include "orbelcast/player_widget.h"
#include "player/login.h"
#include "player/notice.h"
#include "toolkit/signal.h"

namespace orbelcast {

/// Tells in the notice why the camera that was chosen in a player has no picture, until it has one or another camera is
/// chosen.
class CameraFailures final : public QObject {
  Q_OBJECT

 public:
  /// `camera` names the chosen one. All live as long as the player.
  CameraFailures(PlayerWidget& player, Notice& notice, Login& login, std::function<QString()> camera);

 private:
  void Tell(const std::string& address);
  void End();

  VideoServerPush& viewer_;
  Notice& notice_;
  Login& login_;
  const std::function<QString()> camera_;
  bool told_ = false;
  std::vector<Connection> connections_;
};

}  // namespace orbelcast
