#pragma once

#include <string>

#include "platform/clock.h"
#include "viewer/events.h"

namespace orbelcast {

/// `now` as a time code, YYYYMMDDHHMMSS.
std::string TimeCodeOf(const LocalTime& now);

/// `now`'s time of day, hh:mm:ss.
std::string TimeOfDay(const LocalTime& now);

/// Raises VigilboxTCR with the parts of `time_code` by their position, whatever it holds: of one that is too short they
/// are shorter or empty.
void RaiseTimeCode(VideoServerPushEvents& events, std::string time_code);

}  // namespace orbelcast
