#pragma once

#include <QString>

#include "orbelcast/player_widget.h"
#include "platform/registry.h"
#include "toolkit/signal.h"

namespace orbelcast {

/// The program's choices in a player's lists where no person has made any: a moving picture of a useful size. Made
/// before the player, which keeps choices of its own as soon as it is there.
class FirstChoices {
 public:
  explicit FirstChoices(const Registry& registry);

  /// Chooses 10 pictures a second, and 640 × 480 at quality 80, each where nothing was kept. A kept choice of 640 × 480
  /// is made once more: it asks for nothing by itself, and its size would be the server's own.
  void Choose(PlayerWidget& player) const;

 private:
  bool has_rate_;
  bool has_size_;
};

/// The camera that was chosen last on a server.
class LastCamera final : public QObject {
  Q_OBJECT

 public:
  /// Keeps each choice in `player` but `asked_for`, which is the command line's and not the user's. `server` is HOST or
  /// HOST:PORT.
  LastCamera(PlayerWidget& player, const QString& server, const QString& asked_for);

  /// Its id; empty where none is known.
  static QString On(const QString& server);

 private:
  Connection chosen_;
};

}  // namespace orbelcast
