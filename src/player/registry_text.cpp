#include "player/registry_text.h"

namespace orbelcast {

bool RegWriteString(Registry& registry, Registry::Hive hive, const std::string& key, const std::string& name,
                    const std::string& text) {
  return registry.SetValue(hive, key, name, text);
}

std::string RegReadString(const Registry& registry, Registry::Hive hive, const std::string& key,
                          const std::string& name) {
  const auto values = registry.Values(hive, key);
  if (!values) return {};
  std::string found;
  for (const Registry::Value& value : *values) {
    if (value.name.size() >= kRegistryBuffer || value.text.size() >= kRegistryBuffer) break;
    if (value.name == name) found = value.text;
  }
  return found;
}

}  // namespace orbelcast
