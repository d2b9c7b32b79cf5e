#pragma once

#include <functional>
#include <vector>

#include "orbelcast/video_server_push_widget.h"
#include "player/key_commands.h"

namespace orbelcast {

/// What the window around a viewer does.
struct ViewerWindowActions {
  std::function<void()> connect;
  std::function<void()> fill_screen;  ///< And back.
  std::function<void()> quit;
};

/// The commands of a viewer's window, of one camera or of a grid. `viewer` outlives them.
std::vector<KeyCommand> ViewerCommands(VideoServerPushWidget& viewer, const ViewerWindowActions& actions);

}  // namespace orbelcast
