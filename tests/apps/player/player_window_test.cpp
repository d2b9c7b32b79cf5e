// The player's window as a program has it: what F5 and the options do, and the search for a moment of the archive.

#include "player/player_window.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>
#include <algorithm>
#include <atomic>
#include <memory>
#include <string>

#include "fakes/scripted_server.h"
#include "fakes/small_jpeg.h"
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

/// A window on a server with two cameras, whose live pictures have other times each, and whose archive has three days.
class PlayerWindowTest : public testing::Test {
 protected:
  PlayerWindowTest() {
    for (const char* camera : {"1", "2"}) {
      cameras.append("CAM:d").append(camera).append("\tDoor\t").append(server.Url("/live/")).append(camera) += "\r\n";
    }
    qputenv("ORBELCAST_REGISTRY", folder.filePath(QStringLiteral("registry.json")).toLocal8Bit());
  }

  void Open(PlayerOptions options) {
    options.camera = "127.0.0.1:" + std::to_string(server.Port());
    window = std::make_unique<PlayerWindow>(platform.Get(), platform.Requests(), options);
    window->show();
    ASSERT_TRUE(QTest::qWaitFor([&] { return Player().CamList.ListIndex() == 0; }, kLimit));
  }
  UserControl1& Player() { return window->findChild<PlayerWidget*>()->Control(); }
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
  const QTemporaryDir folder;
  QtPlatform platform;
  std::unique_ptr<PlayerWindow> window;
};

TEST_F(PlayerWindowTest, F5KeepsTheCameraThatIsChosenAndConnectsAgain) {
  PlayerOptions options;
  options.fixed_layout = true;
  Open(options);
  // Everything stands where it was designed, from the beginning, so that is the window's size.
  EXPECT_EQ(window->size(), QSize(353, 396));
  Player().CamList.Choose(1);
  ASSERT_TRUE(QTest::qWaitFor([&] { return Player().VS->VideoStream.Visible && Asked("/live/2") > 0; }, kLimit));
  Player().VS->Disconnect();
  const auto before = Asked("/live/2");
  QTest::keyClick(window.get(), Qt::Key_F5);
  EXPECT_TRUE(QTest::qWaitFor([&] { return Player().CamList.ListIndex() == 1 && Asked("/live/2") > before; }, kLimit));
  EXPECT_EQ(Asked("$rdxviewer"), 2);
}

TEST_F(PlayerWindowTest, WhatIsTypedIntoTheBoxesStaysWhileLiveRunsUntilEnterSearches) {
  PlayerOptions options;
  options.frame_rate = 25;
  Open(options);
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

TEST_F(PlayerWindowTest, TheCalendarTellsWhatTheArchiveHasAndALookAtItMovesNothing) {
  Open({});
  // Where nothing was shown of the archive, there is no place to go back to.
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
  line->window()->close();
  QTest::keyClick(window.get(), Qt::Key_C);
  EXPECT_TRUE(WaitUntilAsked("&Day=02&Month=11&Year=2026&Hour=09&Minute=30&Second=01&P=0"));
}

TEST_F(PlayerWindowTest, ADoubleClickOnATileChoosesThatCameraAndAnotherOneGoesBack) {
  Open({});
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

}  // namespace
}  // namespace orbelcast
