#pragma once

#include <iosfwd>
#include <span>

#include "interface/events.h"
#include "json/json.h"

namespace orbelcast {

/// Prints an event of the one viewer of a host as a line, with the time and without passwords, at once: others read
/// along. False where that cannot be written.
bool PrintViewerEvent(std::ostream& output, const EventEntry& event, std::span<const EventArgument> arguments);

/// `value` with its texts as HidePasswords leaves them.
Json WithoutPasswords(Json value);

}  // namespace orbelcast
