#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

namespace orbelcast {

/// Rounds to the nearest integer, ties to even, whatever rounding mode the host has set. Values beyond 32 bits are
/// limited; NaN gives 0.
inline std::int32_t RoundToEven(double value) {
  if (!(value > std::numeric_limits<std::int32_t>::min())) {
    return std::isnan(value) ? 0 : std::numeric_limits<std::int32_t>::min();
  }
  if (value >= std::numeric_limits<std::int32_t>::max()) return std::numeric_limits<std::int32_t>::max();
  auto whole = static_cast<std::int32_t>(value);
  double fraction = value - whole;
  if (fraction < 0) {
    --whole;
    ++fraction;
  }
  if (fraction < 0.5) return whole;
  if (fraction > 0.5) return whole + 1;
  return whole % 2 == 0 ? whole : whole + 1;
}

}  // namespace orbelcast
