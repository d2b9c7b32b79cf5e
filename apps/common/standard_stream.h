#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>

#include "adapters/posix/named_file.h"

namespace orbelcast {

/// Whether a file that an option names is the program's standard input or output.
inline bool IsStandardStream(const std::filesystem::path& name) {
  return name == "-";
}

/// WriteNamedFile, where "-" is standard output.
std::string WriteOutput(const std::filesystem::path& name, std::span<const std::uint8_t> bytes);

/// ReadNamedFile that takes pipes, where "-" is standard input, read to its end.
FileContent ReadInput(const std::filesystem::path& name, std::size_t most_bytes);

}  // namespace orbelcast
