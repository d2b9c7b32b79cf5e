#pragma once

#include "player/player_children.h"
#include "recording/clip_recorder.h"

namespace orbelcast {

/// The player as a clip recorder's host: pictures from the viewer, the rate from its list, the state on the toolbar.
/// `children` outlives the recorder.
ClipRecorder::Host RecordingOf(PlayerChildren& children);

}  // namespace orbelcast
