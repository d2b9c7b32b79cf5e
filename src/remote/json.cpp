#include "remote/json.h"

#include <array>
#include <charconv>
#include <cmath>
#include <nlohmann/json.hpp>
#include <utility>
#include <variant>

#include "toolkit/visible_text.h"

namespace orbelcast {

namespace {

/// Up to here every whole number is a float.
constexpr float kExactWhole = 16777216;

struct ArgumentToJson {
  Json operator()(const float* number) const { return NumberToJson(*number); }
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

Json NumberToJson(float number) {
  if (!std::isfinite(number)) return nullptr;
  if (std::trunc(number) == number && std::abs(number) <= kExactWhole) return static_cast<std::int32_t>(number);
  // The shortest digits that give this float; read as a double they are printed unchanged.
  std::array<char, 32> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
  double value = number;
  std::from_chars(digits.data(), end, value);
  return value;
}

std::string ToLine(const Json& value) {
  return JsonWithoutControls(value.dump(-1, ' ', false, Json::error_handler_t::replace));
}

std::string ToLines(const Json& value) {
  return JsonWithoutControls(value.dump(2, ' ', false, Json::error_handler_t::replace));
}

}  // namespace orbelcast
