#include "mosaic/mosaic_tile.h"

#include <algorithm>
#include <cmath>

#include "toolkit/rounding.h"

namespace orbelcast {

namespace {

/// A number with four decimals, as ten-thousandths.
constexpr std::int64_t kFixedOne = 10000;

/// Nearest whole number, halves to even; both arguments positive or 0.
std::int64_t DivideRounded(std::int64_t dividend, std::int64_t divisor) {
  const std::int64_t whole = dividend / divisor;
  const std::int64_t twice_rest = dividend % divisor * 2;
  const bool up = twice_rest > divisor || (twice_rest == divisor && whole % 2 != 0);
  return up ? whole + 1 : whole;
}

}  // namespace

std::int32_t GridSide(std::int32_t cameras) {
  const double root = std::sqrt(std::max(cameras, 0));
  const double whole = std::floor(root);
  return static_cast<std::int32_t>(root == whole ? whole : whole + 1);
}

std::optional<MosaicTile> PlaceTile(std::int32_t index, std::int32_t cameras, std::int32_t width, std::int32_t height) {
  if (index < 0 || index >= cameras) return std::nullopt;
  const std::int32_t side = GridSide(cameras);
  MosaicTile tile;
  tile.width = RoundToEven(static_cast<double>(width) / side);
  tile.height = RoundToEven(static_cast<double>(height) / side);

  // Four decimals place every tile rightly as long as one part in `side` is more than half a ten-thousandth.
  const std::int64_t place = DivideRounded(index * kFixedOne, side);
  const std::int64_t row = place / kFixedOne;
  const std::int64_t column = DivideRounded((place - row * kFixedOne) * side, kFixedOne);
  tile.x = static_cast<std::int32_t>(column * tile.width);
  tile.y = static_cast<std::int32_t>(row * tile.height);
  tile.requested_width = std::min(tile.width, kMaxRequestedWidth);
  tile.requested_height = std::min(tile.height, kMaxRequestedHeight);
  return tile;
}

}  // namespace orbelcast
