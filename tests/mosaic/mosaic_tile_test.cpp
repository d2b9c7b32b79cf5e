#include "mosaic/mosaic_tile.h"

#include <gmock/gmock.h>

#include <ostream>

#include "mosaic/mosaic_round.h"

namespace orbelcast {

void PrintTo(const MosaicTile& tile, std::ostream* out) {
  *out << tile.x << "," << tile.y << " " << tile.width << "x" << tile.height << " as " << tile.requested_width << "x"
       << tile.requested_height;
}

bool operator==(const MosaicTile& a, const MosaicTile& b) {
  return a.x == b.x && a.y == b.y && a.width == b.width && a.height == b.height &&
         a.requested_width == b.requested_width && a.requested_height == b.requested_height;
}

namespace {

TEST(MosaicTileTest, TheGridIsTheSmallestSquareThatHoldsAll) {
  EXPECT_EQ(GridSide(0), 0);
  for (std::int32_t cameras = 1; cameras <= 1000; ++cameras) {
    const std::int32_t side = GridSide(cameras);
    EXPECT_GE(side * side, cameras);
    EXPECT_LT((side - 1) * (side - 1), cameras);
  }
}

TEST(MosaicTileTest, SizesAreRoundedToEvenAndRequestsAreCapped) {
  EXPECT_EQ(PlaceTile(3, 4, 640, 480), (MosaicTile{320, 240, 320, 240, 320, 200}));
  EXPECT_EQ(PlaceTile(8, 9, 300, 300), (MosaicTile{200, 200, 100, 100, 100, 100}));
  EXPECT_EQ(PlaceTile(4, 5, 200, 150), (MosaicTile{67, 50, 67, 50, 67, 50}));
  EXPECT_EQ(PlaceTile(0, 1, 1920, 1080), (MosaicTile{0, 0, 1920, 1080, 320, 200}));
  // 2.5 goes to 2, 3.5 to 4: the second column then stands out of the area.
  EXPECT_EQ(PlaceTile(3, 4, 5, 7), (MosaicTile{2, 4, 2, 4, 2, 4}));
  EXPECT_EQ(PlaceTile(99, 100, 4, 4), (MosaicTile{0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(PlaceTile(4, 4, 640, 480), std::nullopt);
  EXPECT_EQ(PlaceTile(-1, 4, 640, 480), std::nullopt);
  EXPECT_EQ(PlaceTile(0, 0, 640, 480), std::nullopt);
}

TEST(MosaicTileTest, FourDecimalsMisplaceNoTile) {
  for (std::int32_t cameras = 1; cameras <= 2500; ++cameras) {
    const std::int32_t side = GridSide(cameras);
    for (std::int32_t index = 0; index < cameras; ++index) {
      const auto tile = PlaceTile(index, cameras, side * 10, side * 10);
      ASSERT_EQ(tile->x, index % side * 10) << index << " of " << cameras;
      ASSERT_EQ(tile->y, index / side * 10) << index << " of " << cameras;
    }
  }
}

TEST(MosaicRoundTest, ComesBackIntoRangeAndSaysSo) {
  MosaicRound round;
  EXPECT_FALSE(round.Begin(2));
  for (int i = 0; i < 5; ++i) round.Painted();
  EXPECT_TRUE(round.Begin(3));
  EXPECT_EQ(round.Next(), 0);
  round.Painted();
  EXPECT_FALSE(round.Begin(3));
  EXPECT_EQ(round.Next(), 1);
  EXPECT_TRUE(round.Begin(0));
}

}  // namespace
}  // namespace orbelcast
