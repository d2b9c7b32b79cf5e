// A host that releases the player at every moment at which it can.

#include <chrono>

#include "fakes/rude_loop.h"
#include "player_fixture.h"

namespace orbelcast {
namespace {

using std::chrono::milliseconds;

struct RudeWorld {
  fakes::FakePlatform world;
  fakes::RudeLoop loop{world.loop};
  fakes::FakeHttp http{loop};
  fakes::FakeDialogs dialogs{loop};
  Platform platform = world.platform.With(loop).With(http).With(dialogs);
  std::shared_ptr<UserControl1> player;
  bool own_stack = false;

  RudeWorld() {
    http.route = [](const std::string& url) -> std::optional<fakes::Answer> {
      const bool asks = url.find("$rdxviewer") != std::string::npos;
      auto answer = asks ? TextAnswer("RDXVIEWER\r\nCAM:d1\tDoor\thttp://cam/1\r\nCAM:d2\tYard\thttp://cam/2\r\n\r\n")
                         : PictureAnswer();
      answer.delay = milliseconds(5);
      answer.headers["RC_TCR"] = "20050317090544";
      return answer;
    };
    // The player's own requests wait on the loop, as those of a program with windows do.
    http.block = [this](EventQueue::Nanoseconds delay) {
      Completion answered;
      world.queue.ArmTimer(delay, [&] { answered.Complete(); });
      loop.Wait(answered);
    };
  }

  /// A person looks at each window for a moment and then leaves it by a button, where it has one.
  void WatchWindows() {
    const auto look = [this](Window& window, std::function<void(UserControl1&)> leave) {
      window.Opened.Listen([this, leave] {
        world.queue.ArmTimer(milliseconds(10), [this, leave] {
          if (player) leave(*player);
        });
      });
    };
    look(player->AlertsWin, [](UserControl1& p) {
      (p.AlertsWin.Activate.Visible ? p.AlertsWin.Activate : p.AlertsWin.OutToogle).OnClick();
    });
    look(player->MultiCams, [](UserControl1& p) {
      p.MultiCams.Cameras.Selected(1, true);
      p.MultiCams.Go.OnClick();
    });
    look(player->LogForm, [](UserControl1& p) { p.LogForm.Close(); });
    player->XFullScreen.Opened.Listen([this] { player->XFullScreen.OnResize(); });
    look(player->XFullScreen, [](UserControl1& p) { p.XFullScreen.vs->Mira.OnMouseDown(kRightButton); });
  }

  /// Everything a person and a host do with a player, which is released at step `at`. Returns the number of steps.
  int Run(int at) {
    player = UserControl1::Create(platform);
    WatchWindows();
    loop.steps = 0;
    loop.rude_at = at;
    loop.act = [&] { player.reset(); };
    dialogs.names = {"/nowhere/at/all.jpg", "/nowhere/at/all.avi"};
    dialogs.answers = {Dialogs::Answer::kYes};
    dialogs.texts = {"hello"};
    dialogs.compressions = {Dialogs::Compression{"Uncompressed"}};
    std::vector<std::function<void(UserControl1&)>> doings{
        [](UserControl1& p) {
          p.ReadProperties(
              {{"Server", "srv"}, {"Start", "Yes"}, {"Device", "d2"}, {"ExtendedControls", "Yes"}, {"_Resize", "Yes"}});
        },
        [](UserControl1& p) { p.Connect2Server("srv", "u", "p"); },
        [](UserControl1& p) { p.Resize(9000, 9000); },
        [](UserControl1& p) { p.CamList.Choose(1); },
        [](UserControl1& p) { p.FrameRate.Choose(9); },
    };
    for (std::size_t tool = 0; tool < 18; ++tool) {
      doings.emplace_back([tool](UserControl1& p) { p.Player[tool].OnClick(); });
    }
    doings.emplace_back([](UserControl1& p) { p.Resolution.Choose(1); });  // the chooser once more
    doings.emplace_back([](UserControl1& p) { p.RefreshURLs("http://cam/1", "http://archive"); });
    doings.emplace_back([](UserControl1& p) { p.AviStart(); });
    doings.emplace_back([](UserControl1& p) { p.FrameRate.Choose(0); });
    for (const auto& doing : doings) {
      const auto act = [&] {
        if (player) doing(*player);
      };
      own_stack ? act() : world.loop.RunHandler(act);
      world.queue.Advance(milliseconds(1200));
    }
    const int steps = loop.steps;
    loop.rude_at = -1;
    player.reset();
    world.queue.Advance(milliseconds(1200));
    EXPECT_EQ(world.loop.Handlers(), 0u) << "at step " << at;
    return steps;
  }
};

TEST(PlayerRudenessTest, ReleasedAtAnyMoment) {
  // The many frames' steps are alike: prime strides meet every kind of step, on either stack.
  for (const auto& [own_stack, stride] : {std::pair(false, 3), std::pair(true, 7)}) {
    int steps = 1;
    for (int at = -1; at < steps; at += at < 0 ? 1 : stride) {
      RudeWorld world;
      world.own_stack = own_stack;
      const int counted = world.Run(at);
      if (at < 0) steps = counted;
    }
    EXPECT_GT(steps, 100);
  }
}

}  // namespace
}  // namespace orbelcast
