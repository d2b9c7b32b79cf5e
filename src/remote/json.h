#pragma once

#include <nlohmann/json_fwd.hpp>
#include <span>
#include <string>
#include <string_view>

#include "interface/member.h"

namespace orbelcast {

/// JSON whose objects keep the order in which they were filled. Who looks into one includes <nlohmann/json.hpp>.
using Json = nlohmann::ordered_json;

/// One event as it is told to people and programs: {"event":NAME,"from":CONTROL,"args":{ARG:VALUE,…}}, the arguments
/// under the interface's own names, in its own order. `control` is the host's name of the control that raised it.
Json EventToJson(const EventEntry& event, std::string_view control, std::span<const EventArgument> arguments);

/// A number as JSON: a whole one without decimals, others with no more digits than tell it apart from its neighbours.
Json NumberToJson(float number);

/// `value` on one line, without a line break. Texts from a server may be any bytes: what is not UTF-8 becomes U+FFFD,
/// and what drives a terminal is escaped.
std::string ToLine(const Json& value);
/// The same on as many lines as it takes, indented.
std::string ToLines(const Json& value);

}  // namespace orbelcast
