#pragma once

#include <cstdint>
#include <optional>

namespace orbelcast {

/// One tile, in pixels of the area. Where the side of the grid does not divide the area, the tiles' rounded sizes leave
/// a margin or exceed it by less than half a pixel a tile.
struct MosaicTile {
  std::int32_t x = 0;
  std::int32_t y = 0;
  std::int32_t width = 0;
  std::int32_t height = 0;
  /// The size that the picture is asked for: the decoder stretches a small one, which is cheaper for everybody.
  std::int32_t requested_width = 0;
  std::int32_t requested_height = 0;
};

/// The largest picture that a camera is asked for.
inline constexpr std::int32_t kMaxRequestedWidth = 320;
inline constexpr std::int32_t kMaxRequestedHeight = 200;

/// Tiles a row (and rows) of the smallest square grid that has a place for each camera; 0 for none.
std::int32_t GridSide(std::int32_t cameras);

/// Place of tile `index` (from 0) of `cameras` cameras in an area of `width` × `height` pixels, row by row. Nothing
/// where there is no such tile. Tiles of an area with fewer pixels than tiles have no size.
std::optional<MosaicTile> PlaceTile(std::int32_t index, std::int32_t cameras, std::int32_t width, std::int32_t height);

}  // namespace orbelcast
