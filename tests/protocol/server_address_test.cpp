#include "protocol/server_address.h"

#include <gtest/gtest.h>

#include "protocol/text.h"

namespace orbelcast {
namespace {

TEST(ServerAddressTest, NothingIsEscapedAndThePortIsWrittenWhereThereIsOne) {
  EXPECT_EQ(LoginBase("host", "", "u", ""), "http://host/$openlogin/u/");
  EXPECT_EQ(LoginBase("host", "80", "a user", "p/w?d"), "http://host:80/$openlogin/a user/p/w?d");
  EXPECT_EQ(ServerInformationAddress("host/site:"), "http://host/site:/secure/srv_vigilbox$rdxviewer");
  EXPECT_EQ(ServerInformationAddress("host/"), "http://host/secure/srv_vigilbox$rdxviewer");
  EXPECT_EQ(ArchiveSearchAddress("a", {"31", "01", "2024", "7", "", "x"}, QualitySuffix(PictureCode(12345, 7, "020"))),
            "a&Day=31&Month=01&Year=2024&Hour=7&Minute=&Second=x&P=0&Quality=?live-special12345x0007020");
}

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
