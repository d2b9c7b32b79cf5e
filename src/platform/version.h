#pragma once

#include <string_view>

namespace orbelcast {

/// The controls' version, shown as "Version 1.0.0". The build checks that it is the project's.
inline constexpr int kVersionMajor = 1;
inline constexpr int kVersionMinor = 0;
inline constexpr int kVersionRevision = 0;
/// Shown behind the version, in UTF-8.
inline constexpr std::string_view kLegalNotice = "Copyright © 2026 The Orbelcast authors";

}  // namespace orbelcast
