#include "mosaic/mosaic_tile.h"

#include <gmock/gmock.h>

#include <cmath>

namespace orbelcast {

namespace {

using testing::FieldsAre;
using testing::Optional;

TEST(MosaicTileTest, SizesAreRoundedToEvenAndRequestsAreCapped) {
  EXPECT_THAT(PlaceTile(3, 4, 640, 480), Optional(FieldsAre(320, 240, 320, 240, 320, 200)));
  EXPECT_THAT(PlaceTile(8, 9, 300, 300), Optional(FieldsAre(200, 200, 100, 100, 100, 100)));
  EXPECT_THAT(PlaceTile(4, 5, 200, 150), Optional(FieldsAre(67, 50, 67, 50, 67, 50)));
  EXPECT_THAT(PlaceTile(0, 1, 1920, 1080), Optional(FieldsAre(0, 0, 1920, 1080, 320, 200)));
  // 2.5 goes to 2, 3.5 to 4: the second column then stands out of the area.
  EXPECT_THAT(PlaceTile(3, 4, 5, 7), Optional(FieldsAre(2, 4, 2, 4, 2, 4)));
  EXPECT_THAT(PlaceTile(99, 100, 4, 4), Optional(FieldsAre(0, 0, 0, 0, 0, 0)));
  for (const auto& [index, cameras] : {std::pair(4, 4), std::pair(-1, 4), std::pair(0, 0)}) {
    EXPECT_FALSE(PlaceTile(index, cameras, 640, 480));
  }
}

TEST(MosaicTileTest, TheGridIsTheSmallestSquareAndFourDecimalsMisplaceNoTile) {
  for (std::int32_t cameras = 1; cameras <= 2500; ++cameras) {
    const std::int32_t side = GridSide(cameras);
    ASSERT_EQ(side, std::ceil(std::sqrt(cameras)));
    for (std::int32_t index = 0; index < cameras; ++index) {
      const auto tile = PlaceTile(index, cameras, side * 10, side * 10);
      ASSERT_EQ(tile->x, index % side * 10) << index << " of " << cameras;
      ASSERT_EQ(tile->y, index / side * 10) << index << " of " << cameras;
    }
  }
}

}  // namespace
}  // namespace orbelcast
