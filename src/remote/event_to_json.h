#pragma once

#include <span>
#include <string_view>

#include "interface/member.h"
#include "json/json.h"

namespace orbelcast {

/// One event as it is told to people and programs: {"event":NAME,"from":CONTROL,"args":{ARG:VALUE,…}}, the arguments
/// under the interface's own names, in its own order. `control` is the host's name of the control that raised it.
Json EventToJson(const EventEntry& event, std::string_view control, std::span<const EventArgument> arguments);

}  // namespace orbelcast
