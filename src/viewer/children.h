#pragma once

#include <vector>

#include "toolkit/controls.h"

namespace orbelcast {

class VideoServerPush;

/// Every child control of the viewer under its interface name, array elements as "MotionPicture(2)", from the topmost
/// to the bottommost. Valid as long as the viewer is.
std::vector<NamedChild> Children(VideoServerPush& viewer);

}  // namespace orbelcast
