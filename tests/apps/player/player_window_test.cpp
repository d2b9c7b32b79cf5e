// The player's window as a program has it: what F5 and the options do, the search for a moment of the archive, and what
// the window tells a person.

#include "player/player_window.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>
#include <algorithm>
#include <atomic>
#include <memory>
#include <string>

#include "fakes/scripted_server.h"
#include "fakes/small_jpeg.h"
#include "player/badges.h"
#include "player/full_screen.h"
#include "player/status_line.h"
#include "player/time_line.h"
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

/// A window on a server with two cameras, whose live pictures have other times each, and whose archive has three days.
class PlayerOnServerTest : public PlayerWindowTest {
 protected:
  PlayerOnServerTest() {
    for (const char* camera : {"1", "2"}) {
      cameras.append("CAM:d").append(camera).append("\tDoor\t").append(server.Url("/live/")).append(camera) += "\r\n";
    }
  }

  void OpenServer(PlayerOptions options) {
    options.camera = "127.0.0.1:" + std::to_string(server.Port());
    Open(options);
    ASSERT_TRUE(QTest::qWaitFor([&] { return Player().CamList.ListIndex() >= 0; }, kLimit));
  }
  QLineEdit* Box(int index) { return window->findChild<QLineEdit*>(QStringLiteral("TCR(%1)").arg(index)); }
  std::ptrdiff_t Asked(const std::string& part) {
    return std::ranges::count_if(server.Requests(),
                                 [&](const auto& each) { return TargetOf(each).find(part) != std::string::npos; });
  }
  bool WaitUntilAsked(const std::string& part, std::ptrdiff_t times = 1) {
    return QTest::qWaitFor([&] { return Asked(part) >= times; }, kLimit);
  }

  std::string cameras = "RDXVIEWER\r\n";
  std::atomic<int> pictures = 0;
  ScriptedServer server{[this](const std::string& request, ScriptedServer::Connection& to) {
    const std::string target = TargetOf(request);
    const auto has = [&](const char* part) { return target.find(part) != std::string::npos; };
    if (has("$rdxviewer")) return static_cast<void>(to.Send(AnswerBytes(200, cameras)));
    const std::string live = "202611051213" + std::to_string(10 + pictures++ % 50);
    const std::string time = has("&T=0")   ? "20261101080000"
                             : has("&B=0") ? "20261103170000"
                             : has("&P=0") ? "20261102093001"
                                           : live;
    to.Send(AnswerBytes(200, fakes::SmallJpeg(), "RC_TCR: " + time + "\r\n"));
  }};
};

TEST_F(PlayerOnServerTest, F5KeepsTheCameraThatIsChosenAndConnectsAgainAndTheNextStartBeginsWithIt) {
  PlayerOptions options;
  options.fixed_layout = true;
  OpenServer(options);
  // Everything stands where it was designed, from the beginning, so that is the window's size.
  EXPECT_EQ(window->size(), QSize(353, 396));
  Player().CamList.Choose(1);
  ASSERT_TRUE(QTest::qWaitFor([&] { return Player().VS->VideoStream.Visible && Asked("/live/2") > 0; }, kLimit));
  Player().VS->Disconnect();
  const auto before = Asked("/live/2");
  QTest::keyClick(window.get(), Qt::Key_F5);
  EXPECT_TRUE(QTest::qWaitFor([&] { return Player().CamList.ListIndex() == 1 && Asked("/live/2") > before; }, kLimit));
  EXPECT_EQ(Asked("$rdxviewer"), 2);
  window.reset();
  OpenServer(options);
  EXPECT_EQ(Player().CamList.ListIndex(), 1);
}

TEST_F(PlayerOnServerTest, WhatIsTypedIntoTheBoxesStaysWhileLiveRunsUntilEnterSearches) {
  PlayerOptions options;
  options.frame_rate = 25;
  OpenServer(options);
  ASSERT_TRUE(QTest::qWaitFor([&] { return Box(5)->text() != "--"; }, kLimit));
  window->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(window.get(), kLimit));
  Box(3)->setFocus(Qt::TabFocusReason);
  for (const char* typed : {"7", "05"}) {
    auto* const box = qobject_cast<QLineEdit*>(window->focusWidget());
    box->selectAll();
    ASSERT_TRUE(WaitUntilAsked("/live/1", Asked("/live/1") + 3));
    QTest::keyClicks(box, typed);
    if (box == Box(3)) QTest::keyClick(box, Qt::Key_Tab);
  }
  ASSERT_TRUE(WaitUntilAsked("/live/1", Asked("/live/1") + 3));
  QTest::keyClick(window->focusWidget(), Qt::Key_Return);
  EXPECT_TRUE(WaitUntilAsked("&Day=05&Month=11&Year=2026&Hour=07&Minute=05&Second="));
  EXPECT_TRUE(QTest::qWaitFor([&] { return Box(2)->text() == "02" && Box(4)->text() == "30"; }, kLimit));
}

TEST_F(PlayerOnServerTest, TheCalendarTellsWhatTheArchiveHasAndALookAtItMovesNothing) {
  OpenServer({});
  // If nothing was shown of the archive, there is no place to go back to.
  QTest::keyClick(window.get(), Qt::Key_C);
  auto* const line = window->findChild<TimeLine*>();
  const auto tells = [&](const QString& part) {
    const auto labels = line->parentWidget()->findChildren<QLabel*>();
    return QTest::qWaitFor(
        [&] { return std::ranges::any_of(labels, [&](auto* label) { return label->text().contains(part); }); }, kLimit);
  };
  EXPECT_TRUE(tells("from 1 Nov 2026 08:00:00 to 3 Nov 2026 17:00:00"));
  EXPECT_EQ(Asked("&P=0"), 0);
  QTest::mouseClick(line, Qt::LeftButton, {}, QPoint(line->width() / 2, 5));
  EXPECT_TRUE(WaitUntilAsked("&Day=03&Month=11&Year=2026&Hour=12&Minute=00&Second=00&P=0"));
  EXPECT_TRUE(tells("2 Nov 2026 09:30:01"));
  // The picture comes in the middle of the search, and while the archive plays nothing is asked.
  ASSERT_TRUE(QTest::qWaitFor([&] { return !Player().VS->MasterTimer.Enabled; }, kLimit));
  line->window()->close();
  QTest::keyClick(window.get(), Qt::Key_C);
  EXPECT_TRUE(WaitUntilAsked("&Day=02&Month=11&Year=2026&Hour=09&Minute=30&Second=01&P=0"));
}

TEST_F(PlayerOnServerTest, ADoubleClickOnATileChoosesThatCameraAndAnotherOneGoesBack) {
  OpenServer({});
  const std::string both = Player().LiveAddressOf(0) + "\r\n" + Player().LiveAddressOf(1) + "\r\n";
  Player().ShowTogether(both);
  auto* const video = window->findChild<QWidget*>(QStringLiteral("VideoStream"));
  const QPoint second(video->width() * 3 / 4, video->height() / 4);
  QTest::mouseDClick(video, Qt::LeftButton, {}, second);
  EXPECT_TRUE(QTest::qWaitFor([&] { return Player().CamList.ListIndex() == 1 && Asked("/live/2") > 0; }, kLimit));
  EXPECT_FALSE(Player().VS->MultiCam.Enabled);
  QTest::mouseDClick(video, Qt::LeftButton, {}, second);
  EXPECT_TRUE(QTest::qWaitFor([&] { return Player().VS->MultiCam.Enabled.Get(); }, kLimit));
  EXPECT_EQ(Player().Together(), both);
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
