#pragma once

namespace orbelcast::camera_server {

/// What the program's exit status tells.
enum ExitStatus : int {
  kEndedBySignal = 0,
  kCannotServe = 1,  ///< The address is taken or not ours, or the folder has no pictures.
  kBadUsage = 2,
};

}  // namespace orbelcast::camera_server
