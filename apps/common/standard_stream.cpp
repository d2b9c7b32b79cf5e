#include "common/standard_stream.h"

#include <array>
#include <cstdio>

namespace orbelcast {

std::string WriteOutput(const std::filesystem::path& name, std::span<const std::uint8_t> bytes) {
  if (!IsStandardStream(name)) return WriteNamedFile(name, bytes);
  const bool written = std::fwrite(bytes.data(), 1, bytes.size(), stdout) == bytes.size() && std::fflush(stdout) == 0;
  return written ? "" : "standard output takes no more";
}

FileContent ReadInput(const std::filesystem::path& name, std::size_t most_bytes) {
  if (!IsStandardStream(name)) return ReadNamedFile(name, most_bytes, Pipes::kRead);
  FileContent content;
  std::array<char, 4096> piece;
  while (content.text.size() <= most_bytes) {
    const std::size_t count = std::fread(piece.data(), 1, piece.size(), stdin);
    if (count == 0) return content;
    content.text.append(piece.data(), count);
  }
  return {.problem = "it is too large", .too_large = true};
}

}  // namespace orbelcast
