#include "protocol/server_address.h"

#include <gtest/gtest.h>

#include "protocol/text.h"

namespace orbelcast {
namespace {

TEST(ServerAddressTest, AMosaicTileIsAskedForAtTheQualityOfItsArea) {
  EXPECT_EQ(MosaicTileAddress("c", 99, 101), "c?live-special0099x0101080");
  EXPECT_EQ(MosaicTileAddress("c", 100, 100), "c?live-special0100x0100070");
  EXPECT_EQ(MosaicTileAddress("c", 201, 100), "c?live-special0201x0100050");
  EXPECT_EQ(MosaicTileAddress("c", 320, 200), "c?live-special0320x0200050");
  EXPECT_EQ(MosaicTileAddress("c", 321, 200), "0320x0200055");
}

TEST(TextTest, IsTakenApartAtEverySeparator) {
  using Pieces = std::vector<std::string_view>;
  EXPECT_EQ(Split("", kCrLf), Pieces{});
  EXPECT_EQ(Split("a\r\n\r\nb\nc\r\n", kCrLf), (Pieces{"a", "", "b\nc", ""}));
  EXPECT_EQ(Replaced("aaa", "aa", "b"), "ba");
  EXPECT_EQ(WithoutHttp("HtTp://http://x"), "http://x");
}

}  // namespace
}  // namespace orbelcast
