#pragma once

#include "interface/member.h"

namespace orbelcast {

/// Calls `listener` for every event of a viewer, with its entry and its arguments in the interface's order, for as long
/// as the viewer's events live.
void ListenToAll(VideoServerPushEvents& events, EventListener listener);

}  // namespace orbelcast
