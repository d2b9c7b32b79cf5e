// Presses and calls that meet a question of the player's which still waits for its server.

#include <chrono>

#include "player_fixture.h"

namespace orbelcast {
namespace {

using std::chrono::milliseconds;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr milliseconds kSlow{1000};
constexpr milliseconds kMoment{10};

std::string InfoText(const std::string& camera) {
  return "RDXVIEWER\r\nSNM:" + camera + "\r\nCAM:d1\t" + camera + "\thttp://cam/" + camera +
         "\r\nALT:1\tFire\r\nHWO:\tLamp\t1\r\nHWI:\tGate\t0\r\n\r\n";
}

/// A player on a loop that runs while a request waits, as a program's with windows does. Server "srv" answers slowly,
/// every other one at once.
class QuestionsTest : public PlayerWorld {
 protected:
  static constexpr std::size_t kLog = 11, kMessage = 13, kInputsAndOutputs = 14, kAlerts = 15;

  QuestionsTest() {
    world.http.block = [this](EventQueue::Nanoseconds delay) {
      Completion answered;
      world.queue.ArmTimer(delay, [&] { answered.Complete(); });
      world.loop.Wait(answered);
    };
    texts = {{"//srv", Slow(InfoText("old"))}, {"//new", TextAnswer(InfoText("new"))}};
    Create();
    for (const NamedChild& child : player->Windows()) {
      auto* window = std::get<Window*>(child.control);
      window->Opened.Listen([this, window] { opened.push_back(window->Caption); });
    }
    Begin([this] { LoadServer({{"Device", "d1"}}); });
    world.queue.Advance(2 * kSlow);
    Asked();
  }
  static fakes::Answer Slow(const std::string& text) {
    auto answer = TextAnswer(text);
    answer.delay = kSlow;
    return answer;
  }

  void Begin(const std::function<void()>& work) {
    world.loop.RunHandler(work);
    world.queue.Advance(kMoment);
  }
  void Press(Button& button) { Begin(button.OnClick); }
  void Press(std::size_t tool) { Press(player->Player[tool]); }
  void ConnectTo(const std::string& server, const std::string& user = "b") {
    Begin([&] { player->Connect2Server(server, user, "own"); });
  }
  /// The addresses asked for, besides pictures.
  std::vector<std::string> Questions() {
    auto urls = Asked();
    std::erase_if(urls, [](const std::string& url) { return url.starts_with("http://cam/"); });
    return urls;
  }

  std::vector<std::string> opened;
};

TEST_F(QuestionsTest, APressThatWouldAskAnotherQuestionIsDroppedWhileOneWaits) {
  const std::vector<std::size_t> tools{kLog, kMessage, kInputsAndOutputs, kAlerts};
  for (const std::size_t first : tools) {
    for (const std::size_t second : tools) {
      SCOPED_TRACE(std::to_string(first) + " then " + std::to_string(second));
      world.dialogs.texts = {"hello", "hello"};
      opened.clear();
      Press(first);
      EXPECT_EQ(player->MousePointer, UserControl1::kHourglass);
      Press(second);
      world.queue.Advance(2 * kSlow);
      EXPECT_EQ(player->MousePointer, UserControl1::kDefaultPointer);
      EXPECT_EQ(Questions().size(), 1u);
      EXPECT_EQ(opened.size(), first == kMessage ? 0u : 1u);
      const bool inputs = first == kInputsAndOutputs;
      EXPECT_THAT(player->AlertsWin.OutList.List(), testing::SizeIs(inputs ? 1 : 0));
      EXPECT_THAT(player->AlertsWin.AlertList.List(), testing::SizeIs(inputs || first == kAlerts ? 1 : 0));
      // Nor while the window is open.
      if (first != kMessage) Press(second);
      EXPECT_THAT(Questions(), IsEmpty());
      for (const NamedChild& window : player->Windows()) std::get<Window*>(window.control)->Close();
      world.queue.Advance(kMoment);
    }
  }
}

TEST_F(QuestionsTest, OneButtonOfTheAlertsWindowIsTakenAtATimeAndClosesNoOtherWindow) {
  Press(kInputsAndOutputs);
  world.queue.Advance(2 * kSlow);
  Questions();
  player->AlertsWin.OutList.ListIndex(0);
  Press(player->AlertsWin.OutToogle);
  Press(player->AlertsWin.OutToogleOff);
  world.queue.Advance(2 * kSlow);
  EXPECT_THAT(Questions(), ElementsAre("http://srv:81/$openlogin/u/secret/srv_vigilbox$output=1+1"));
  EXPECT_FALSE(player->AlertsWin.IsOpen());

  Press(kAlerts);
  world.queue.Advance(2 * kSlow);
  Press(player->AlertsWin.Activate);
  Begin([&] { player->AlertsWin.Close(); });
  Press(kAlerts);  // the activation still waits
  EXPECT_FALSE(player->AlertsWin.IsOpen());
  ConnectTo("new");
  Press(kInputsAndOutputs);
  EXPECT_TRUE(player->AlertsWin.IsOpen());
  world.queue.Advance(2 * kSlow);
  EXPECT_TRUE(player->AlertsWin.IsOpen());
  EXPECT_EQ(player->AlertsWin.Caption.Get(), "I/O Control");
}

// Whatever waits for the server before: the camera list for the host, for its properties, a button of the toolbar.
TEST_F(QuestionsTest, ANewServerMakesTheAnswersOfTheOneBeforeVoid) {
  const std::vector<std::function<void()>> waits{
      [&] { player->Connect2Server("srv", "a", "secret"); },
      [&] {
        Load({{"Server", "srv"}, {"Username", "a"}, {"Password", "secret"}, {"Device", "d1"}, {"Start", "Yes"}});
      },
      [&] { player->Player[kLog].OnClick(); },
      [&] { player->Player[kInputsAndOutputs].OnClick(); },
      [&] { player->Player[kAlerts].OnClick(); },
  };
  for (std::size_t i = 0; i < waits.size(); ++i) {
    SCOPED_TRACE(i);
    Begin(waits[i]);
    ConnectTo("new");
    EXPECT_EQ(player->MousePointer, UserControl1::kDefaultPointer);
    EXPECT_THAT(player->CamList.List(), ElementsAre("new"));
    Asked();
    Begin([&] { player->CamList.Choose(0); });
    world.queue.Advance(2 * kSlow);
    EXPECT_THAT(opened, IsEmpty());
    EXPECT_EQ(player->SystemName(), "new");
    EXPECT_THAT(player->CamList.List(), ElementsAre("new"));
    EXPECT_EQ(player->CamList.ListIndex(), 0);
    EXPECT_EQ(world.http.Count("SetTimeouts 20000 20000 20000 60000"), 1);  // the choice alone connects
    EXPECT_THAT(Asked(), testing::Each("http://cam/new/b:own" + std::string(kLive)));
    // The place is free again.
    Press(kAlerts);
    EXPECT_TRUE(player->AlertsWin.IsOpen());
    player->AlertsWin.Close();
    opened.clear();
    Begin([&] { Load({{"Server", "srv"}, {"Username", "u"}, {"Password", "secret"}}); });
    world.queue.Advance(2 * kSlow);
  }
}

// While an account's server is looked up: what follows goes to the old server with its own login, or not at all.
TEST_F(QuestionsTest, ANewServersLoginIsNotForTheAccountThatIsStillLookedUp) {
  world.configuration.relay_host = "relay";
  world.configuration.relay_lookup_host = "lookup";
  world.dialogs.texts = {"hello"};
  texts.insert(texts.begin(), {{"//lookup/", Slow("http://1.2.3.4/")}, {"//1.2.3.4/", TextAnswer(InfoText("old"))}});
  Begin([&] { player->Connect2Server("relay/joe", "a", "secret"); });
  ConnectTo("new");
  world.queue.Advance(2 * kSlow);
  EXPECT_EQ(world.http.Count("SetRequestHeader Authorization:  Basic Yjpvd24="), 1);      // b:own
  EXPECT_EQ(world.http.Count("SetRequestHeader Authorization:  Basic YTpzZWNyZXQ="), 1);  // a:secret

  Begin([&] { player->Connect2Server("relay/joe", "a", "secret"); });
  world.queue.Advance(2 * kSlow);
  Asked();
  Press(kMessage);
  ConnectTo("new");
  world.queue.Advance(2 * kSlow);
  EXPECT_THAT(Questions(), Not(Contains(HasSubstr("message"))));
}

// The cameras of the server before are no choice while the new one is asked: they are not for its password.
TEST_F(QuestionsTest, NoCameraIsLeftToChooseWhileAnotherServerIsAsked) {
  ConnectTo("srv", "mallory");
  player->CamList.Choose(0);
  Begin([&] { player->SetMultiCams(); });
  EXPECT_THAT(player->MultiCams.Cameras.List(), IsEmpty());
  player->MultiCams.Close();
  world.queue.Advance(kMoment);
  EXPECT_THAT(Asked(), Not(Contains(HasSubstr("cam/old/mallory"))));
}

}  // namespace
}  // namespace orbelcast
