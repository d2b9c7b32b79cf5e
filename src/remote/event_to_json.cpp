#include "remote/event_to_json.h"

#include <string>
#include <variant>

namespace orbelcast {

namespace {

struct ArgumentToJson {
  Json operator()(const float* number) const { return NumberToJson(*number); }
  Json operator()(const DropData* data) const {
    Json formats = Json::Object();
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
  Json values = Json::Object();
  for (std::size_t i = 0; i < arguments.size() && i < event.arguments.size(); ++i) {
    values[event.arguments[i].name] = std::visit(ArgumentToJson{}, arguments[i]);
  }
  return {{"event", event.name}, {"from", control}, {"args", std::move(values)}};
}

}  // namespace orbelcast
