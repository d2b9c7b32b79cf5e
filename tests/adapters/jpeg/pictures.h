#pragma once

#include <string>

#include "fakes/temporary_folder.h"
#include "platform/jpeg_decoder.h"

namespace orbelcast {

using Bytes = std::vector<std::uint8_t>;

/// A file of the folder beside this one: a smooth picture with an edge, 330 × 246 but for the large one, of the kind
/// that it is named after. With a scan for each coefficient of each component it has 64 scans in grey and 190 in
/// colours.
inline Bytes Picture(const std::string& name) {
  const std::string bytes = fakes::ReadFile(ORBELCAST_PICTURES "/" + name + ".jpg");
  return {bytes.begin(), bytes.end()};
}

/// A whole file but for some bytes in the middle, which only decoding finds out.
inline Bytes Scrambled() {
  auto bytes = Picture("420");
  for (std::size_t i = bytes.size() / 2; i < bytes.size() / 2 + 200; ++i) bytes[i] = static_cast<std::uint8_t>(i * 37);
  return bytes;
}

}  // namespace orbelcast
