// What scripts cannot show of a player's start, its host's properties and its layout; tests/scripts has the rest.

#include <tuple>

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
  EXPECT_EQ(player->FrameRate.ListIndex(), 12);
  EXPECT_EQ(player->VS->FrameRate(), 12);
  EXPECT_EQ(player->Resolution.ListIndex(), 27);
  EXPECT_EQ(player->VS->lStatus.Caption.Get(), "");  // Nothing stopped it.
  // No picture was chosen before, so that of 640 × 480 has none to keep.
  player->RefreshURLs("http://cam/1", "http://archive");
  EXPECT_EQ(Asked().front(), "http://cam/1");
  for (const char* nonsense : {"-4", "26", "99999999999999999999", "1e400"}) {
    Store(nonsense, " 7 apples");
    EXPECT_EQ(player->FrameRate.ListIndex(), -1) << nonsense;
    EXPECT_EQ(player->Resolution.ListIndex(), 7);
  }
  Store("abc", "30");
  EXPECT_EQ(player->FrameRate.ListIndex(), 0);
  EXPECT_EQ(player->Resolution.ListIndex(), -1);
}

// The colon of a missing port is there in the one address and not in the other.
TEST_F(PlayerTest, AServerWithoutAPort) {
  Create();
  Load({{"Server", "srv"}, {"Device", "d1"}});
  EXPECT_THAT(Asked(), testing::Contains("http://srv:/secure/srv_vigilbox$rdxviewer"));
  Click(4);
  EXPECT_EQ(Asked().back(),
            "http://srv/$openlogin///srv_vigilbox$img?Device=d1&Day=0&Month=0&Year=0&Hour=0&Minute=0&Second=0&B=0"
            "&Quality=" +
                std::string(kLive));
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
  for (const auto& [width, height, shown] :
       {std::tuple(5235.0f, 9000.0f, false), std::tuple(9000.0f, 5900.0f, false), std::tuple(5236.0f, 5901.0f, true)}) {
    player->Resize(width, height);
    EXPECT_EQ(player->PlayerControls.Visible, shown);
  }
  player->CamList.Height = 316.5f;
  player->Show();
  EXPECT_EQ(player->VSPlace.Top, 316);
  EXPECT_EQ(player->PlayerControls.Top, 5901 - player->PlayerControls.Height + 2 * 12);
}

}  // namespace
}  // namespace orbelcast
