#pragma once

#include <QPointer>
#include <vector>

#include "orbelcast/player_widget.h"
#include "player/badges.h"
#include "toolkit/signal.h"

namespace orbelcast {

/// Shows that a player records a clip: the badge with its length, and the button that ends it pressed in.
class RecordingSign final : public QObject {
  Q_OBJECT

 public:
  RecordingSign(PlayerWidget& player, Badges& badges);

 private:
  void Show();

  QPointer<Badges> badges_;
  bool recording_ = false;
  int seconds_ = 0;  ///< That brought pictures: each gives the clip one.
  std::vector<Connection> connections_;
};

}  // namespace orbelcast
