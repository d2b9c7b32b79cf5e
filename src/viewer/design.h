#pragma once

#include "platform/platform.h"

namespace orbelcast {

class VideoServerPush;

/// Gives the viewer's children what they have by design, before anything runs: places, colours, fonts, pictures,
/// captions and intervals.
void ApplyDesign(VideoServerPush& viewer, const Platform& platform);

}  // namespace orbelcast
