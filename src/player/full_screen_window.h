#pragma once

#include <memory>

#include "platform/platform.h"
#include "player/player_life.h"
#include "toolkit/controls.h"
#include "viewer/video_server_push.h"

namespace orbelcast {

/// Shows one stream, or several cameras together, over the whole screen until a mouse button is pressed on it.
///
/// Its tag names the stream: an address, or "*" and the text that VideoServerPush::MultiCamView takes. That starts
/// whenever the window has got a size, so again at each later one.
struct FullScreenWindow final : Window {
  FullScreenWindow(Platform& platform, PlayerLife& life);

  /// The viewer that fills the window, from the moment that the player prepares the window until it is unloaded; null
  /// otherwise. It is there when `Opened` is told, and gone when `Closed` is.
  std::shared_ptr<VideoServerPush> vs;

  /// Makes the viewer, where there is none.
  VideoServerPush& Viewer();
  /// The viewer was made. A listener that subscribes to it here gets its events before the window acts on them.
  Signal<VideoServerPush&> ViewerMade;

 protected:
  void Load() override;

 private:
  void Form_Resize();
  void vs_MouseDown();

  Platform& platform_;
};

}  // namespace orbelcast
