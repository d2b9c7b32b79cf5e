#pragma once

#include <filesystem>

namespace orbelcast {

/// The folder of the program or shared library that this code is linked into, links followed; empty where the system
/// does not say.
std::filesystem::path OwnFolder();

}  // namespace orbelcast
