#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

namespace orbelcast {

/// Rounds to the nearest integer, ties to even, whatever rounding mode the host has set. Values beyond 32 bits are
/// limited; what is not a number gives 0.
inline std::int32_t RoundToEven(double value) {
  if (std::isnan(value)) return 0;
  if (value >= std::numeric_limits<std::int32_t>::max()) return std::numeric_limits<std::int32_t>::max();
  if (value <= std::numeric_limits<std::int32_t>::min()) return std::numeric_limits<std::int32_t>::min();
  const double below = std::floor(value);
  const double fraction = value - below;
  const auto whole = static_cast<std::int32_t>(below);
  if (fraction < 0.5) return whole;
  if (fraction > 0.5) return whole + 1;
  return whole % 2 == 0 ? whole : whole + 1;
}

}  // namespace orbelcast
