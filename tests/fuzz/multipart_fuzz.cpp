// Any bytes as a Content-Type (the first line) and the body of that type, which comes in pieces.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "adapters/multipart/part_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const std::size_t line = std::min(text.find('\n'), size);
  for (const std::size_t piece : {std::size_t{1}, std::size_t{7}, size + 1}) {
    orbelcast::PartReader reader(text.substr(0, line));
    for (std::size_t at = line; at < size && reader.Take(text.substr(at, piece)); at += piece) {
      const bool has_newest = reader.HasNewest();
      const auto part = reader.TakeNewest();
      if (has_newest == part.body.Empty() || part.body.Size() + part.headers.size() > 2 * size) std::abort();
    }
  }
  return 0;
}
