#pragma once

#include <string>
#include <string_view>

namespace orbelcast {

/// The controls' version, shown as "Version 1.0.0". The build refuses another one than the project's.
inline constexpr int kVersionMajor = 1;
inline constexpr int kVersionMinor = 0;
inline constexpr int kVersionRevision = 0;
/// "1.0.0".
inline std::string VersionText() {
  return std::to_string(kVersionMajor) + "." + std::to_string(kVersionMinor) + "." + std::to_string(kVersionRevision);
}
/// Shown after the version, in UTF-8.
inline constexpr std::string_view kLegalNotice = "Copyright © 2026 The Orbelcast authors";

}  // namespace orbelcast
