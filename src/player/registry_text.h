#pragma once

#include <cstddef>
#include <string>

#include "platform/registry.h"

namespace orbelcast {

/// Characters that the buffers hold with which a key's values are looked through, the NUL at the end included.
inline constexpr std::size_t kRegistryBuffer = 255;

/// Stores a text in the registry, making its key where it is missing. False where it could not be stored.
bool RegWriteString(Registry& registry, Registry::Hive hive, const std::string& key, const std::string& name,
                    const std::string& text);

/// Looks a key's values through for the one of that name, letter by letter; empty where there is none. The look ends at
/// a value whose name or text is longer than the buffers hold.
std::string RegReadString(const Registry& registry, Registry::Hive hive, const std::string& key,
                          const std::string& name);

}  // namespace orbelcast
