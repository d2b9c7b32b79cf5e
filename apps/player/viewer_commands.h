#pragma once

#include <QString>
#include <functional>
#include <vector>

#include "orbelcast/video_server_push_widget.h"
#include "player/key_commands.h"

namespace orbelcast {

/// The actions of the window around a viewer.
struct ViewerWindowActions {
  std::function<void()> connect;
  std::function<void()> fill_screen;  ///< And back.
  std::function<void()> quit;
  std::function<void(const QString&)> tell{};  ///< Tells a failure.
  std::function<void(int)> show_camera{};      ///< From 0, or CameraShow::kAll; empty where there is one picture alone.
};

/// The commands of a viewer's window, of one camera or of a grid. `viewer` outlives them.
std::vector<KeyCommand> ViewerCommands(VideoServerPushWidget& viewer, const ViewerWindowActions& actions);

/// Those of a window that nobody is meant to operate.
std::vector<KeyCommand> KioskCommands(const ViewerWindowActions& actions);

}  // namespace orbelcast
