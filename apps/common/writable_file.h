#pragma once

#include <filesystem>
#include <string>

namespace orbelcast {

/// Why `file` could not be written, for people; empty where it can. Writes nothing.
std::string WhyUnwritable(const std::filesystem::path& file);

}  // namespace orbelcast
