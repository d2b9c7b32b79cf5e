#pragma once

#include <string>

#include "platform/http_request.h"
#include "player/limits.h"

namespace orbelcast {

/// Sends one of the player's commands; blocks the thread until it is answered or a time-out has ended it. False where
/// no answer came.
inline bool SendCommand(HttpRequest& request, const std::string& url) {
  request.Open("GET", url);
  request.SetTimeouts(player_limits::kCommandTimeout, player_limits::kCommandTimeout, player_limits::kCommandTimeout,
                      player_limits::kCommandTimeout);
  return request.Send();
}

}  // namespace orbelcast
