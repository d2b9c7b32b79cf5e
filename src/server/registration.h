#pragma once

#include <string>

#include "platform/registry.h"

namespace orbelcast::server {

/// Writes the classes into the registry, as made by the library at `library_path`. False where that fails.
///
/// Under the hive of classes: "CLSID\{ID}" with a description, its "InprocServer32" with the library's path, its
/// "ProgID" with the class's public name, and under that name "CLSID" with the id. Unnamed values throughout.
bool RegisterClasses(Registry& registry, const std::string& library_path);

/// Removes the classes. True when none is left.
bool UnregisterClasses(Registry& registry);

}  // namespace orbelcast::server
