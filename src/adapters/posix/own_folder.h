#pragma once

#include <filesystem>

namespace orbelcast {

/// The program or shared library that this code is linked into, links followed; empty where the system does not say. A
/// relative name by which it was loaded counts from the folder of the process at the call.
std::filesystem::path OwnFile();
/// Its folder.
std::filesystem::path OwnFolder();

}  // namespace orbelcast
