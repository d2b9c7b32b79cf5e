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

TEST(ServerAddressTest, TellsArchiveAndCommandsByTheirAddress) {
  const std::string login = LoginBase("h", "", "activitylogfile", "&Day=");
  EXPECT_TRUE(AsksForArchive(ArchiveAddress(login, "1")));
  EXPECT_TRUE(AsksForArchive(ArchiveStepAddress("http://other/archive", ArchiveStep::kPlay, "")));
  EXPECT_FALSE(AsksForArchive(LiveStreamAddress(LiveAddress(login, "", ""), QualitySuffix("0640x0480080"))));
  EXPECT_EQ(CommandOf(MessageAddress(login, "output=1")), ServerCommand::kMessage);
  EXPECT_EQ(CommandOf(OutputSwitchAddress(OutputCommand(login), 1, true)), ServerCommand::kOutput);
  EXPECT_EQ(CommandOf(AlertActivationAddress(AlertCommand(login), 1)), ServerCommand::kAlert);
  EXPECT_EQ(CommandOf(ActivityLogAddress(login)), ServerCommand::kActivityLog);
  EXPECT_EQ(CommandOf(login), std::nullopt);
}

TEST(TextTest, ASchemeIsTakenOffOnce) {
  EXPECT_EQ(WithoutHttp("HtTp://http://x"), "http://x");
}

}  // namespace
}  // namespace orbelcast
