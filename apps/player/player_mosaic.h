#pragma once

#include <QObject>
#include <string>

#include "orbelcast/player_widget.h"

namespace orbelcast {

/// Several cameras together in the player: a double click on a tile chooses that camera, another one shows all again.
class PlayerMosaic final : public QObject {
  Q_OBJECT

 public:
  /// `player` owns this object.
  explicit PlayerMosaic(PlayerWidget& player);

 private:
  int Count() const;
  void OnDoubleClick(int tile);
  void ShowAlone(int tile);

  PlayerWidget& player_;
  std::string together_;       ///< The cameras shown before a tile was chosen, to go back to.
  std::string alone_address_;  ///< The stream of the camera that was chosen from it.
};

}  // namespace orbelcast
