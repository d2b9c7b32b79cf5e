#include "orbelcast/event_json.h"

#include <nlohmann/json.hpp>
#include <ostream>
#include <string>
#include <utility>

#include "common/shown_text.h"

namespace orbelcast {

bool PrintViewerEvent(std::ostream& output, const EventEntry& event, std::span<const EventArgument> arguments) {
  output << ToLine(WithoutPasswords(EventToJson(event, "viewer", arguments))) << std::endl;
  return output.good();
}

Json WithoutPasswords(Json value) {
  if (value.is_string()) return HidePasswords(value.get_ref<const std::string&>());
  if (value.is_structured()) {
    for (Json& each : value) each = WithoutPasswords(std::move(each));
  }
  return value;
}

}  // namespace orbelcast
