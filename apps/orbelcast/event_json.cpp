#include "event_json.h"

#include <variant>

namespace orbelcast {

namespace {

struct ArgumentToJson {
  Json operator()(const DropData* data) const {
    Json formats = Json::object();
    for (const auto& [media_type, bytes] : data->formats) formats[media_type] = bytes;
    return formats;
  }
  template <typename Value>
  Json operator()(const Value* value) const {
    return *value;
  }
};

}  // namespace

Json EventToJson(const EventEntry& event, std::string_view control, std::span<const EventArgument> arguments) {
  Json values = Json::object();
  for (std::size_t i = 0; i < arguments.size() && i < event.arguments.size(); ++i) {
    values[std::string(event.arguments[i].name)] = std::visit(ArgumentToJson{}, arguments[i]);
  }
  Json line;
  line["event"] = event.name;
  line["from"] = control;
  line["args"] = std::move(values);
  return line;
}

std::string ToLine(const Json& value) {
  return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace orbelcast
