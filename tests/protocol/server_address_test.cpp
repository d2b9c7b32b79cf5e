#include "protocol/server_address.h"

#include <gtest/gtest.h>

#include "protocol/text.h"

namespace orbelcast {
namespace {

TEST(ServerAddressTest, NothingIsEscapedAndThePortIsWrittenWhereThereIsOne) {
  EXPECT_EQ(Authority("host", ""), "http://host");
  EXPECT_EQ(LoginBase("host", "80", "a user", "p/w?d"), "http://host:80/$openlogin/a user/p/w?d");
  EXPECT_EQ(ServerInformationAddress("host:"), "http://host:/secure/srv_vigilbox$rdxviewer");
  EXPECT_EQ(ServerInformationAddress("host/site:"), "http://host/site:/secure/srv_vigilbox$rdxviewer");
  EXPECT_EQ(ServerInformationAddress("host/"), "http://host/secure/srv_vigilbox$rdxviewer");
  EXPECT_EQ(ServerInformationAddress(""), "http:///secure/srv_vigilbox$rdxviewer");
}

TEST(ServerAddressTest, ThePictureSuffixStandsBehindLiveAndArchiveAddresses) {
  const std::string suffix = QualitySuffix(PictureCode(640, 480, "090"));
  EXPECT_EQ(LiveStreamAddress(LiveAddress("", "ann", "pw"), suffix), "/ann:pw?live-special0640x0480090");
  const std::string archive = ArchiveAddress("http://h/$openlogin/u/p", "cam 1");
  EXPECT_EQ(ArchiveStepAddress(archive, ArchiveStep::kReversePlay, suffix),
            "http://h/$openlogin/u/p/srv_vigilbox$img?Device=cam 1&Day=0&Month=0&Year=0&Hour=0&Minute=0&Second=0&R=0"
            "&Quality=?live-special0640x0480090");
  EXPECT_EQ(ArchiveSearchAddress(archive, {"31", "01", "2024", "7", "", "x"}, suffix),
            "http://h/$openlogin/u/p/srv_vigilbox$img?Device=cam 1&Day=31&Month=01&Year=2024&Hour=7&Minute=&Second=x"
            "&P=0&Quality=?live-special0640x0480090");
  EXPECT_EQ(PictureCode(12345, 7, "020"), "12345x0007020");
}

TEST(ServerAddressTest, AMosaicTileIsAskedForAtTheQualityOfItsArea) {
  EXPECT_EQ(MosaicTileAddress("c", 99, 101), "c?live-special0099x0101080");
  EXPECT_EQ(MosaicTileAddress("c", 100, 100), "c?live-special0100x0100070");
  EXPECT_EQ(MosaicTileAddress("c", 200, 100), "c?live-special0200x0100070");
  EXPECT_EQ(MosaicTileAddress("c", 201, 100), "c?live-special0201x0100050");
  EXPECT_EQ(MosaicTileAddress("c", 320, 200), "c?live-special0320x0200050");
  EXPECT_EQ(MosaicTileAddress("c", 321, 200), "0320x0200055");
}

TEST(ServerAddressTest, CommandsStandBehindTheLogin) {
  EXPECT_EQ(ActivityLogAddress("L"), "L/srv_vigilbox$activitylogfile");
  EXPECT_EQ(MessageAddress("L", "a b&c"), "L/srv_vigilbox$message?msg=a b&c&Send=Send+Message");
  EXPECT_EQ(OutputSwitchAddress(OutputCommand("L"), 3, true), "L/srv_vigilbox$output=3+1");
  EXPECT_EQ(OutputSwitchAddress(OutputCommand("L"), 12, false), "L/srv_vigilbox$output=12+0");
  EXPECT_EQ(AlertActivationAddress(AlertCommand("L"), 1), "L/srv_vigilbox$activatealert=1");
  EXPECT_EQ(RelayLookupAddress("h:1", "ann"), "http://h:1/cgi-bin/relaypost.exe?op=rdxviewer&account=ann");
}

TEST(TextTest, IsTakenApartAtEverySeparator) {
  using Pieces = std::vector<std::string_view>;
  EXPECT_EQ(Split("", kCrLf), Pieces{});
  EXPECT_EQ(Split("a", kCrLf), Pieces{"a"});
  EXPECT_EQ(Split("a\r\n\r\nb\nc\r\n", kCrLf), (Pieces{"a", "", "b\nc", ""}));
  EXPECT_EQ(Split("\r\n", kCrLf), (Pieces{"", ""}));
  EXPECT_EQ(Replaced("aaa", "aa", "b"), "ba");
  EXPECT_EQ(Replaced("http://h/http://", "http://", ""), "h/");
  EXPECT_EQ(WithoutHttp("HtTp://http://x"), "http://x");
  EXPECT_EQ(WithoutHttp("http:/"), "http:/");
}

}  // namespace
}  // namespace orbelcast
