#pragma once

#include "player/busy_pointer.h"
#include "player/full_screen_window.h"
#include "player/multiple_cameras.h"
#include "player/player_children.h"
#include "player/player_life.h"

namespace orbelcast {

/// Shows the player's stream or mosaic over the whole screen.
class FullScreenCommand {
 public:
  /// All outlive this object.
  FullScreenCommand(PlayerChildren& children, PlayerLife& life, BusyPointer& pointer, const MultipleCameras& cameras,
                    FullScreenWindow& window)
      : children_(children), life_(life), pointer_(pointer), cameras_(cameras), XFullScreen(window) {}

  void ShowFullScreen();

 private:
  PlayerChildren& children_;
  PlayerLife& life_;
  BusyPointer& pointer_;
  const MultipleCameras& cameras_;
  FullScreenWindow& XFullScreen;
};

}  // namespace orbelcast
