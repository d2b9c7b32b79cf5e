#pragma once

#include <QString>
#include <vector>

#include "platform/platform.h"
#include "player/camera_show.h"
#include "player/player_options.h"

namespace orbelcast {

/// A camera server's answer about its cameras.
struct ServerCameras {
  std::vector<ShownCamera> cameras;
  QString name;     ///< The system's own; the address where it tells none.
  QString problem;  ///< For people; empty where there are cameras.
};

/// Asks the server that the options name for its cameras. Waits for the answer, ten seconds at most for each step.
ServerCameras AskForCameras(Platform& platform, const PlayerOptions& options);

}  // namespace orbelcast
