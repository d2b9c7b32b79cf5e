#pragma once

#include <span>

#include "interface/member.h"

namespace orbelcast {

/// The events of a viewer, in the interface's order: for those who need no more of its description, which takes long to
/// compile.
std::span<const EventEntry> ViewerEvents();

/// Calls `listener` for every event of a viewer, with its entry and its arguments in the interface's order, for as long
/// as the viewer's events live.
void ListenToAll(VideoServerPushEvents& events, EventListener listener);

}  // namespace orbelcast
