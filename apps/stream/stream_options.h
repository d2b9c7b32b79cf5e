#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "common/access.h"
#include "common/messages.h"

namespace orbelcast {

class VideoServerPush;

/// One camera's stream, as a program was asked to show it.
struct StreamOptions {
  std::string url{};
  Access access{};
  std::int16_t frame_rate = 1;                               ///< Pictures a second, 1 to 30.
  std::optional<std::array<std::int32_t, 4>> motion_area{};  ///< x1, y1, x2, y2 in hundredths of the picture.
  std::optional<std::string> motion_zones{};                 ///< One character a zone, "0" excludes it.
  std::int32_t sensitivity = 80;                             ///< Percent.
  bool auto_reconnect = false;
  std::string device{};  ///< The camera's id at the server, while `url` is still that of the server.
  Messages messages{};

  bool Motion() const { return motion_area || motion_zones; }
};

/// Sets the viewer's properties as the options say. Does not connect.
void Configure(VideoServerPush& viewer, const StreamOptions& options);

/// Seconds that a first picture may take, where not told otherwise: enough for a camera that wakes up.
inline constexpr double kFirstPictureWithin = 10;

/// Between two tries to connect to a camera that has not answered yet: often enough for a person, no burden for a
/// camera. A viewer that reconnects by itself goes on with a stream that it had; a first try it makes once only.
inline constexpr std::chrono::seconds kRetryAfter{2};

}  // namespace orbelcast
