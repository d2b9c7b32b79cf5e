// The toolbar's buttons and the windows behind them, beyond what scripts can show; tests/scripts has the rest.

#include <chrono>

#include "player/limits.h"
#include "player_fixture.h"

namespace orbelcast {
namespace {

class ToolbarTest : public PlayerWorld {
 protected:
  ToolbarTest() {
    Create();
    LoadServer({{"Device", "d1"}, {"ExtendedControls", "Yes"}});
    world.http.log.clear();
    for (const NamedChild& child : player->Windows()) {
      auto* window = std::get<Window*>(child.control);
      window->Opened.Listen([this, window] {
        ++opened;
        if (on_open) on_open();
        window->Close();
      });
    }
  }

  int opened = 0;
  /// A person's act in the window that has just opened; then it is closed.
  std::function<void()> on_open;
};

// On the host's own screen the window may change its size; what was fetched for another one would be stretched.
TEST_F(ToolbarTest, FullScreenStartsAnewAtEachSize) {
  auto& window = player->XFullScreen;
  on_open = [&] {
    EXPECT_TRUE(window.vs->AlwaysSmooth());
    for (const float width : {28800.0f, 19200.0f}) {
      window.Width = width;
      world.http.log.clear();
      world.loop.RunToEnd([&] { window.OnResize(); });
      EXPECT_EQ(window.vs->Width(), width);
      EXPECT_EQ(Asked(), std::vector<std::string>(2, "http://cam/1/u:secret" + std::string(kLive)));
    }
    const std::weak_ptr<VideoServerPush> viewer = window.vs;
    window.vs->VideoStream.OnMouseDown(kLeftButton);
    EXPECT_TRUE(viewer.expired());
  };
  Click(16);
  EXPECT_EQ(opened, 1);
}

// By what is shown, not by what else the server tells.
TEST_F(ToolbarTest, ListsOfAServerEndAtTheItemsThatAreShown) {
  std::string text = "RDXVIEWER\r\n";
  for (int i = 0; i < player_limits::kMaxListItems + 5; ++i) text += "CAM:d\tname\r\nALT:1\tFire\r\n";
  texts = {{"$rdxviewer", TextAnswer(text + "HWO:\tLamp\t1" + std::string(1'000'000, '\t') + "\r\n\r\n")}};
  on_open = [&] {
    const bool alerts = player->AlertsWin.Activate.Visible;
    EXPECT_EQ(player->AlertsWin.AlertList.ListCount(), alerts ? player_limits::kMaxListItems : 0);
    EXPECT_EQ(player->AlertsWin.OutList.ListCount(), alerts ? 0 : 1);
  };
  Click(15);
  Click(14);
}

TEST_F(ToolbarTest, ArchivePressesThatMeetLeaveTheBandwidthAsTheFirstFoundIt) {
  auto slow = PictureAnswer();
  slow.delay = std::chrono::seconds(1);
  texts = {{"&T=0", slow}, {"&B=0", slow}};
  for (const bool shown : {false, true}) {
    player->VS->ShowBandwidth(shown);
    for (const std::size_t tool : {0, 4, 0}) {
      world.loop.RunHandler([&] { player->Player[tool].OnClick(); });
      world.queue.Advance(std::chrono::milliseconds(100));
      EXPECT_TRUE(player->VS->ShowBandwidth());
    }
    world.queue.Advance(std::chrono::seconds(3));
    EXPECT_EQ(player->VS->ShowBandwidth(), shown);
  }
}

TEST_F(ToolbarTest, NothingThatIsReadHoldsThePassword) {
  std::string read;
  const auto note = [&](const std::string& text) { read += text + "\n"; };
  player->VS->lStatus.Caption.Changed.Listen(note);
  player->VS->Events.Status.Listen([&](std::string& text) { note(text); });
  const auto note_all = [&](const std::vector<NamedChild>& children) {
    for (const NamedChild& child : children) {
      if (const auto* label = std::get_if<Label*>(&child.control)) note((*label)->Caption);
      if (const auto* box = std::get_if<TextBox*>(&child.control)) note((*box)->Text);
    }
  };
  on_open = [&] {
    for (const NamedChild& window : player->Windows()) {
      note(std::get<Window*>(window.control)->Caption);
      note_all(std::get<Window*>(window.control)->Children());
    }
  };
  for (const int status : {200, 401, 500}) {
    texts = {{"", TextAnswer("x", status)}};
    for (std::size_t tool = 0; tool < player->Player.size(); ++tool) Click(tool);
    note_all(player->Children());
  }
  for (const std::string& line : world.dialogs.log) note(line);
  EXPECT_THAT(read, testing::Not(testing::HasSubstr("secret")));
  EXPECT_THAT(read, testing::HasSubstr("Activity Log"));
}

}  // namespace
}  // namespace orbelcast
