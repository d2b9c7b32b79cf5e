#pragma once

#include "platform/platform.h"
#include "player/player_children.h"
#include "player/player_life.h"

namespace orbelcast {

/// Saves the viewer's picture under a name that the user chooses.
class SnapshotCommand {
 public:
  /// All outlive this object.
  SnapshotCommand(Platform& platform, PlayerChildren& children, const PlayerLife& life)
      : platform_(platform), children_(children), life_(life) {}

  /// Saves "tempf.jpg" in the folder of the control's own file, asks for a name, and moves the file there. An answer
  /// that is cancelled leaves it, as does a file of that name that cannot be replaced.
  void SaveSnapshot();

 private:
  /// Asks the user; false where the host has released the player meanwhile, too.
  bool MayReplace();

  Platform& platform_;
  PlayerChildren& children_;
  const PlayerLife& life_;
};

}  // namespace orbelcast
