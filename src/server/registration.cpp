#include "server/registration.h"

#include <array>
#include <cstdio>

#include "dispatch/control_class.h"

namespace orbelcast::server {

namespace {

constexpr auto kHive = Registry::Hive::kClassesRoot;

std::string TextOf(const Guid& id) {
  std::array<char, 64> text;
  std::snprintf(text.data(), text.size(), "{%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}", id.data1, id.data2,
                id.data3, id.data4[0], id.data4[1], id.data4[2], id.data4[3], id.data4[4], id.data4[5], id.data4[6],
                id.data4[7]);
  return text.data();
}

std::string ClassKey(const ControlClass& each) {
  return "CLSID\\" + TextOf(each.id);
}

std::string NameKey(const ControlClass& each) {
  return "Orbelcast." + std::string(each.interface.name);
}

bool Register(Registry& registry, const ControlClass& each, const std::string& library_path) {
  const std::string key = ClassKey(each);
  const std::string name = NameKey(each);
  const std::string description(each.interface.text);
  return registry.SetValue(kHive, key, "", description) &&
         registry.SetValue(kHive, key + "\\InprocServer32", "", library_path) &&
         registry.SetValue(kHive, key + "\\InprocServer32", "ThreadingModel", "Apartment") &&
         registry.SetValue(kHive, key + "\\ProgID", "", name) && registry.SetValue(kHive, name, "", description) &&
         registry.SetValue(kHive, name + "\\CLSID", "", TextOf(each.id));
}

bool Remove(Registry& registry, const std::string& key) {
  registry.DeleteKey(kHive, key);
  return !registry.Values(kHive, key);
}

}  // namespace

bool RegisterClasses(Registry& registry, const std::string& library_path) {
  for (const ControlClass& each : Classes()) {
    if (!Register(registry, each, library_path)) return false;
  }
  return true;
}

bool UnregisterClasses(Registry& registry) {
  bool removed = true;
  for (const ControlClass& each : Classes()) {
    removed = Remove(registry, ClassKey(each)) && removed;
    removed = Remove(registry, NameKey(each)) && removed;
  }
  return removed;
}

}  // namespace orbelcast::server
