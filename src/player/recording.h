#pragma once

#include "player/player_children.h"
#include "recording/clip_recorder.h"

namespace orbelcast {

/// What the player's clip recorder takes its pictures and its rate from, and shows on the toolbar. `children` outlives
/// the recorder.
ClipRecorder::Host RecordingOf(PlayerChildren& children);

}  // namespace orbelcast
