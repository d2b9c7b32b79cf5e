// Prints the interfaces of both controls as one JSON array: for each class its name, text, properties, methods, events
// and persisted texts, in the interface's own order.

#include <cstdio>
#include <iostream>
#include <string>
#include <string_view>

#include "dispatch/control_class.h"
#include "json/json.h"

namespace {

using orbelcast::ArgumentEntry;
using orbelcast::ControlInterface;
using orbelcast::Json;
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
  Json list = Json::Array();
  for (const ArgumentEntry& each : arguments) {
    list.Append(
        {{"name", each.name}, {"type", NameOf(each.type)}, {"optional", each.optional}, {"by_value", each.by_value}});
  }
  return list;
}

Json Describe(const ControlInterface& described) {
  Json control{{"name", described.name},   {"text", described.text},  {"properties", Json::Array()},
               {"methods", Json::Array()}, {"events", Json::Array()}, {"persisted", Json::Array()}};
  for (const auto& each : described.properties) {
    control["properties"].Append({{"name", each.name},
                                  {"id", each.id},
                                  {"type", NameOf(each.type)},
                                  {"writable", each.writable},
                                  {"text", each.text}});
  }
  for (const auto& each : described.methods) {
    control["methods"].Append({{"name", each.name},
                               {"id", each.id},
                               {"arguments", ArgumentsOf(each.arguments)},
                               {"result", NameOf(each.result)},
                               {"text", each.text}});
  }
  for (const auto& each : described.events) {
    control["events"].Append(
        {{"name", each.name}, {"id", each.id}, {"arguments", ArgumentsOf(each.arguments)}, {"text", each.text}});
  }
  for (const auto& each : described.persisted) {
    control["persisted"].Append({{"key", each.key}, {"text", each.text}});
  }
  return control;
}

}  // namespace

int main() {
  Json classes = Json::Array();
  for (const auto& each : orbelcast::server::Classes()) classes.Append(Describe(each.interface));
  std::cout << ToLines(classes) << '\n';
  return std::cout ? 0 : 1;
}
