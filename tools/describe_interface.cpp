// Prints the interfaces of both controls as one JSON array: for each class its name, text, properties, methods, events
// and persisted texts, in the interface's own order.

#include <cstdio>
#include <iostream>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "interface/user_control1_interface.h"
#include "interface/video_server_push_interface.h"

namespace {

using Json = nlohmann::ordered_json;
using orbelcast::ArgumentEntry;
using orbelcast::ControlInterface;
using orbelcast::ValueType;

/// The type by its name in the interface; empty for none.
std::string_view NameOf(ValueType type) {
  switch (type) {
    case ValueType::kNone:
      return "";
    case ValueType::kBoolean:
      return "Boolean";
    case ValueType::kInteger:
      return "Integer";
    case ValueType::kLong:
      return "Long";
    case ValueType::kSingle:
      return "Single";
    case ValueType::kText:
      return "String";
    case ValueType::kData:
      return "IDataObject";
    case ValueType::kPicture:
      return "IPicture";
    case ValueType::kVariant:
      return "Variant";
  }
  return "";
}

Json ArgumentsOf(std::span<const ArgumentEntry> arguments) {
  Json list = Json::array();
  for (const ArgumentEntry& each : arguments) {
    list.push_back(
        {{"name", each.name}, {"type", NameOf(each.type)}, {"optional", each.optional}, {"by_value", each.by_value}});
  }
  return list;
}

Json Describe(const ControlInterface& described) {
  Json control{{"name", described.name},   {"text", described.text},  {"properties", Json::array()},
               {"methods", Json::array()}, {"events", Json::array()}, {"persisted", Json::array()}};
  for (const auto& each : described.properties) {
    control["properties"].push_back({{"name", each.name},
                                     {"id", each.id},
                                     {"type", NameOf(each.type)},
                                     {"writable", each.writable},
                                     {"text", each.text}});
  }
  for (const auto& each : described.methods) {
    control["methods"].push_back({{"name", each.name},
                                  {"id", each.id},
                                  {"arguments", ArgumentsOf(each.arguments)},
                                  {"result", NameOf(each.result)},
                                  {"text", each.text}});
  }
  for (const auto& each : described.events) {
    control["events"].push_back(
        {{"name", each.name}, {"id", each.id}, {"arguments", ArgumentsOf(each.arguments)}, {"text", each.text}});
  }
  for (const auto& each : described.persisted) {
    control["persisted"].push_back({{"key", each.key}, {"text", each.text}});
  }
  return control;
}

}  // namespace

int main() {
  std::cout
      << Json{Describe(orbelcast::interface::kVideoServerPush), Describe(orbelcast::interface::kUserControl1)}.dump(2)
      << '\n';
  return std::cout ? 0 : 1;
}
