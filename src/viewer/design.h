#pragma once

#include "platform/platform.h"

namespace orbelcast {

class VideoServerPush;

/// Sets the design values of the viewer's children, before anything runs: places, colours, fonts, pictures,
/// captions and intervals.
void ApplyDesign(VideoServerPush& viewer, const Platform& platform);

}  // namespace orbelcast
