// The player's window as a program has it: what F5 and the options do.

#include "player/player_window.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>
#include <algorithm>
#include <memory>
#include <string>

#include "fakes/scripted_server.h"
#include "fakes/small_jpeg.h"
#include "player/badges.h"
#include "player/status_line.h"
#include "player/user_control1.h"
#include "widgets/qt_platform.h"

namespace orbelcast {
namespace {

using fakes::AnswerBytes;
using fakes::ScriptedServer;
using fakes::TargetOf;

/// Milliseconds: far more than anything here takes.
constexpr int kLimit = 20'000;

/// A player on a registry of its own.
class PlayerWindowTest : public testing::Test {
 protected:
  void Open() {
    PlayerOptions options;
    options.live_url = "http://127.0.0.1:1/";
    Open(options);
  }
  void Open(const PlayerOptions& options) {
    window = std::make_unique<PlayerWindow>(platform, options);
    window->show();
  }
  UserControl1& Player() const { return window->findChild<PlayerWidget*>()->Control(); }
  QString StatusLineText() const {
    const auto* line = window->findChild<StatusLine*>();
    return line->isVisible() ? line->text() : QString();
  }

  /// Before the platform is there, which looks for its registry.
  static bool HasOwnRegistry(const QTemporaryDir& folder) {
    return qputenv("ORBELCAST_REGISTRY", folder.filePath(QStringLiteral("registry.json")).toLocal8Bit());
  }

  const QTemporaryDir folder;
  const bool has_own_registry = HasOwnRegistry(folder);
  QtPlatform platform;
  std::unique_ptr<PlayerWindow> window;
};

TEST_F(PlayerWindowTest, F5KeepsTheCameraThatIsChosenAndConnectsAgainAndTheNextStartBeginsWithIt) {
  std::string cameras = "RDXVIEWER\r\n";
  ScriptedServer server([&](const std::string& request, ScriptedServer::Connection& to) {
    const bool asks = TargetOf(request).find("$rdxviewer") != std::string::npos;
    to.Send(AnswerBytes(200, asks ? cameras : fakes::SmallJpeg()));
  });
  for (const char* camera : {"1", "2"}) {
    cameras.append("CAM:d").append(camera).append("\tDoor\t").append(server.Url("/live/")).append(camera) += "\r\n";
  }
  const auto asked = [&](const std::string& part) {
    return std::ranges::count_if(server.Requests(),
                                 [&](const auto& each) { return TargetOf(each).find(part) != std::string::npos; });
  };
  PlayerOptions options;
  options.camera = "127.0.0.1:" + std::to_string(server.Port());
  options.fixed_layout = true;
  Open(options);
  // Everything stands where it was designed, from the beginning, so that is the window's size.
  EXPECT_EQ(window->size(), QSize(353, 396));
  UserControl1& player = Player();
  ASSERT_TRUE(QTest::qWaitFor([&] { return player.CamList.ListIndex() == 0; }, kLimit));
  player.CamList.Choose(1);
  ASSERT_TRUE(QTest::qWaitFor([&] { return player.VS->VideoStream.Visible && asked("/live/2") > 0; }, kLimit));
  player.VS->Disconnect();
  const auto before = asked("/live/2");
  QTest::keyClick(window.get(), Qt::Key_F5);
  EXPECT_TRUE(QTest::qWaitFor([&] { return player.CamList.ListIndex() == 1 && asked("/live/2") > before; }, kLimit));
  EXPECT_EQ(asked("$rdxviewer"), 2);
  window.reset();
  Open(options);
  EXPECT_TRUE(QTest::qWaitFor([&] { return Player().CamList.ListIndex() == 1; }, kLimit));
}

TEST_F(PlayerWindowTest, ChoosesAUsefulPictureTheFirstTimeAndLeavesAPersonsChoices) {
  Open();
  EXPECT_EQ(Player().VS->FrameRate(), 10);
  EXPECT_EQ(Player().Resolution.List()[static_cast<std::size_t>(Player().Resolution.ListIndex())],
            "640x480 (20% compression)");
  std::string asked;
  const auto failed = Player().VS->Events.ConnectionFailedV2.Connect([&](std::string& url, bool&) { asked = url; });
  Player().RefreshURLs("http://127.0.0.1:1/live/1", "");
  EXPECT_TRUE(asked.ends_with("0640x0480080")) << asked;
  Player().FrameRate.Choose(3);
  Player().Resolution.Choose(7);
  window.reset();
  Open();
  EXPECT_EQ(Player().FrameRate.ListIndex(), 3);
  EXPECT_EQ(Player().Resolution.ListIndex(), 7);
  EXPECT_TRUE(Player().PlayerControls.Visible);
  window->resize(1, 1);
  EXPECT_TRUE(QTest::qWaitFor([&] { return window->size() == window->minimumSize(); }, kLimit));
  EXPECT_TRUE(Player().PlayerControls.Visible);
}

TEST_F(PlayerWindowTest, LeavesBothFullScreensByKeysAndSaysSo) {
  Open();
  ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
  QTest::keyClick(window.get(), Qt::Key_F11);
  EXPECT_TRUE(window->isFullScreen());
  EXPECT_NE(window->findChild<Hint*>(), nullptr);
  QTest::keyClick(window.get(), Qt::Key_Escape);
  EXPECT_FALSE(window->isFullScreen());
  EXPECT_EQ(window->findChild<Hint*>(), nullptr);
  for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_F11}) {
    Player().Player[16].OnClick();
    auto* screen = window->findChild<QWidget*>(QStringLiteral("XFullScreen"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return screen->findChild<Hint*>() != nullptr; }, kLimit));
    QTest::keyClick(screen, key);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !Player().XFullScreen.IsOpen() && !screen->isVisible(); }, kLimit));
  }
}

TEST_F(PlayerWindowTest, ShowsThatAClipIsRecorded) {
  Open();
  const auto* button = window->findChild<QToolButton*>(QStringLiteral("Player(8)"));
  const auto shown = [&] {
    QStringList texts;
    for (const auto* each : window->findChildren<Badge*>()) {
      if (each->isVisible()) texts += each->text();
    }
    return texts;
  };
  std::int32_t none = 0;
  Player().Player[8].Visible = true;
  for (int second = 0; second < 61; ++second) Player().VS->Events.StreamInfo(none, none);
  EXPECT_EQ(shown(), QStringList(QStringLiteral("REC 01:01")));
  EXPECT_TRUE(button->isChecked());
  Player().Player[8].Visible = false;
  EXPECT_EQ(shown(), QStringList());
}

TEST_F(PlayerWindowTest, TellsOfAPictureThatCannotBeSavedAndOfWhatTheServerRefuses) {
  Open();
  QtDialogs& questions = platform.Questions();
  const auto chosen = [&](const char* file) { questions.NameChosen({.title = {}, .filter = "*.jpg"}, file); };
  chosen("/proc/kept.jpg");
  questions.Asks();
  questions.Answered(Dialogs::Answer::kNo);
  QTest::qWait(0);
  EXPECT_EQ(StatusLineText(), QString()) << "the person kept what is there";
  chosen("/proc/picture.jpg");
  questions.Asks();
  questions.Answered(Dialogs::Answer::kYes);
  EXPECT_TRUE(QTest::qWaitFor([&] { return StatusLineText().contains(QLatin1String("/proc/picture.jpg")); }, kLimit));
  platform.Requests().Ended()(
      {.answered = true, .status = 403, .url = "http://h/$openlogin/a/b/srv_vigilbox$output=1"});
  EXPECT_EQ(StatusLineText(),
            QStringLiteral("The output was not switched: the server does not allow it to this user."));
}

}  // namespace
}  // namespace orbelcast
