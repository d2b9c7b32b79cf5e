// A player's start, its host's properties and its layout, beyond what scripts can show; tests/scripts has the rest.

#include "player_fixture.h"

namespace orbelcast {
namespace {

class PlayerTest : public PlayerWorld {
 protected:
  void Store(const std::string& rate, const std::string& resolution) {
    for (const auto& [name, text] : {std::pair("FPS", rate), std::pair("Resolution", resolution)}) {
      world.registry.SetValue(Registry::Hive::kLocalMachine, "Software\\Holmvane ORBELCAST", name, text);
    }
    player = UserControl1::Create(world.platform);
  }
};

TEST_F(PlayerTest, ShowsTheStoredChoicesAndLivesWithStoredNonsense) {
  Store("12", "27");
  EXPECT_EQ(player->VS->FrameRate(), 12);
  EXPECT_EQ(player->VS->lStatus.Caption.Get(), "");  // Nothing stopped it.
  // No picture was chosen before, so that of 640 × 480 has none to keep.
  player->RefreshURLs("http://cam/1", "http://archive");
  EXPECT_EQ(Asked().front(), "http://cam/1");
  for (const char* nonsense : {"-4", "26", "99999999999999999999", "1e400"}) {
    Store(nonsense, " 7 apples");
    EXPECT_EQ(player->FrameRate.ListIndex(), -1) << nonsense;
    EXPECT_EQ(player->Resolution.ListIndex(), 7);
  }
}

// The colon of a missing port is there in the one address and not in the other.
TEST_F(PlayerTest, AServerWithoutAPort) {
  Create();
  Load({{"Server", "srv"}, {"Device", "d1"}});
  EXPECT_THAT(Asked(), testing::Contains("http://srv:/secure/srv_vigilbox$rdxviewer"));
  Click(4);
  EXPECT_THAT(Asked().back(), testing::StartsWith("http://srv/$openlogin///srv_vigilbox$img?Device=d1&Day=0&Month=0&"));
  LoadServer();
  player->Connect2Server("other:82", "me", "");
  Click(15);  // The port that was read is forgotten.
  EXPECT_EQ(Asked(), std::vector<std::string>(2, "http://other:82/secure/srv_vigilbox$rdxviewer"));
}

// The toolbar's room ends to the twip, and a list's height between two twips counts as the nearer one, the even one of
// two as near. The screen's scale down is what the toolbar hangs out by.
TEST_F(PlayerTest, TheLayoutCountsTwips) {
  world.screen.twips_x = 8;
  world.screen.twips_y = 12;
  Create();
  LoadServer();
  player->Resize(5236, 5900);
  EXPECT_FALSE(player->PlayerControls.Visible);
  player->Resize(5236, 5901);
  EXPECT_TRUE(player->PlayerControls.Visible);
  player->CamList.Height = 316.5f;
  player->Show();
  EXPECT_EQ(player->VSPlace.Top, 316);
  EXPECT_EQ(player->PlayerControls.Top, 5901 - player->PlayerControls.Height + 2 * 12);
}

}  // namespace
}  // namespace orbelcast
