// The viewer's window: what it tells a person of its camera, and how it shows several.

#include "player/viewer_window.h"

#include <gmock/gmock.h>

#include <QAbstractButton>
#include <QLineEdit>
#include <QTest>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <memory>

#include "fakes/run_loop.h"
#include "fakes/scripted_server.h"
#include "fakes/small_jpeg.h"
#include "player/badges.h"
#include "player/server_dialog.h"
#include "widgets/qt_platform.h"

namespace orbelcast {
namespace {

using fakes::AnswerBytes;
using fakes::ScriptedServer;
using std::chrono::milliseconds;

class ViewerWindowTest : public testing::Test {
 protected:
  void Open(const std::string& camera, bool auto_reconnect = false) {
    PlayerOptions options;
    options.camera = camera;
    options.auto_reconnect = auto_reconnect;
    Open(options);
  }
  void Open(const PlayerOptions& options) {
    window = std::make_unique<ViewerWindow>(platform.Get(), options);
    window->show();
    window->Start();
  }
  bool RunUntil(const std::function<bool()>& done, milliseconds limit = milliseconds(10'000)) {
    return fakes::RunLoop(platform.Get().loop.Queue(), limit, done);
  }
  /// The notice's text; empty while it is hidden.
  std::string Notice() const {
    const auto* notice = window->findChild<QWidget*>(QStringLiteral("notice"));
    return notice->isVisible() ? notice->accessibleName().toStdString() : std::string();
  }

  /// The text of the badge over the picture; empty while there is none.
  std::string BadgeText() const {
    for (const auto* each : window->findChildren<Badge*>()) {
      if (each->isVisible()) return each->text().toStdString();
    }
    return {};
  }
  VideoServerPushWidget& Viewer() const { return *window->findChild<VideoServerPushWidget*>(); }

  QtPlatform platform;
  std::unique_ptr<ViewerWindow> window;
};

TEST_F(ViewerWindowTest, SaysWhyThereIsNoPicture) {
  const std::pair<std::string, const char*> answers[] = {
      {AnswerBytes(200, "<html>a camera server's page</html>"), "is no JPEG picture"},
      {AnswerBytes(401), "asks for a login"},
      {"no HTTP at all\r\n\r\n", "does not answer"},
  };
  for (const auto& [answer, why] : answers) {
    const ScriptedServer server(answer);
    Open(server.Url());
    EXPECT_TRUE(RunUntil([&, told = why] { return Notice().find(told) != std::string::npos; })) << Notice();
  }
}

TEST_F(ViewerWindowTest, StartedAgainWhileItWaitsAsksOnceMoreAloneAndCanBeClosedMeanwhile) {
  const ScriptedServer server([](const std::string&, ScriptedServer::Connection& to) { to.Never(); });
  Open(server.Url(), /*auto_reconnect=*/true);
  EXPECT_TRUE(RunUntil([&] { return Notice().starts_with("Waiting for 127.0.0.1:"); })) << Notice();
  window->Start();
  RunUntil([] { return false; }, milliseconds(2500));
  EXPECT_EQ(server.Requests().size(), 2u);
  window.reset();
  RunUntil([] { return false; }, milliseconds(50));
}

TEST_F(ViewerWindowTest, GoesOnTryingACameraThatHasNotAnsweredYet) {
  std::atomic<int> asked = 0;
  const ScriptedServer server([&](const std::string&, ScriptedServer::Connection& to) {
    if (asked++ == 0) return to.Reset();
    to.Send(AnswerBytes(200, fakes::SmallJpeg()));
  });
  Open(server.Url(), /*auto_reconnect=*/true);
  const auto* video = window->findChild<QWidget*>(QStringLiteral("VideoStream"));
  EXPECT_TRUE(RunUntil([&] { return video->isVisible(); })) << "asked " << asked << " times; " << Notice();
}

// A camera that hangs: the last picture is no picture of now.
TEST_F(ViewerWindowTest, TellsThatThePictureIsOldUntilTheNextOneComesAndThatItIsStopped) {
  std::atomic<int> asked = 0;
  std::atomic<bool> goes_on = false;
  const ScriptedServer server([&](const std::string&, ScriptedServer::Connection& to) {
    while (asked > 3 && !goes_on && to.Pause(milliseconds(10))) continue;
    ++asked;
    to.Send(AnswerBytes(200, fakes::SmallJpeg()));
  });
  Open(server.Url());
  EXPECT_TRUE(RunUntil([&] { return BadgeText() == "LIVE"; })) << BadgeText();
  EXPECT_TRUE(RunUntil([&] { return Notice().starts_with("No picture since "); })) << Notice();
  EXPECT_TRUE(RunUntil([&] { return BadgeText().empty(); })) << BadgeText();
  goes_on = true;
  EXPECT_TRUE(RunUntil([&] { return Notice().empty() && BadgeText() == "LIVE"; })) << Notice() << BadgeText();
  Viewer().StopGettingFrames();
  EXPECT_TRUE(RunUntil([&] { return BadgeText() == "STOPPED"; })) << BadgeText();
}

TEST_F(ViewerWindowTest, TellsTheArchivesTimeAndKeepsThePicturesProportions) {
  const ScriptedServer server(AnswerBytes(200, fakes::SmallJpeg(), "RC_TCR: 20260102030405\r\n"));
  Open(server.Url("/srv_vigilbox$img?Device=1&P=0"));
  EXPECT_TRUE(RunUntil([&] { return BadgeText() == "ARCHIVE 2026-01-02 03:04:05"; })) << BadgeText();
  // The picture is a square.
  for (const QSize size : {QSize(500, 300), QSize(200, 400)}) {
    window->resize(size);
    const int side = std::min(size.width(), size.height());
    const QRect middle((size.width() - side) / 2, (size.height() - side) / 2, side, side);
    const auto* video = window->findChild<QWidget*>(QStringLiteral("VideoStream"));
    EXPECT_TRUE(RunUntil([&] { return Viewer().geometry() == middle && video->size() == middle.size(); }));
  }
}

TEST_F(ViewerWindowTest, AsksForTheLoginThatTheCameraRefusesAndOnceMoreFromTheNotice) {
  std::atomic<bool> lets_in = false;
  const ScriptedServer server([&](const std::string&, ScriptedServer::Connection& to) {
    to.Send(lets_in ? AnswerBytes(200, fakes::SmallJpeg()) : AnswerBytes(401));
  });
  Open(server.Url());
  const auto dialog = [&] { return window->findChild<ServerDialog*>(); };
  EXPECT_TRUE(RunUntil([&] { return dialog() != nullptr; }));
  dialog()->reject();
  EXPECT_TRUE(RunUntil([&] { return dialog() == nullptr; }));
  QTest::keyClick(window.get(), Qt::Key_Escape);
  QAbstractButton* log_in = nullptr;
  for (auto* each : window->findChildren<QAbstractButton*>()) {
    if (each->isVisible() && each->text().contains(QLatin1String("Log in"))) log_in = each;
  }
  ASSERT_NE(log_in, nullptr) << "closed with nothing in its place";
  log_in->click();
  ASSERT_NE(dialog(), nullptr);
  dialog()->findChildren<QLineEdit*>().at(1)->setText(QStringLiteral("ann"));
  lets_in = true;
  dialog()->accept();
  EXPECT_TRUE(RunUntil([&] { return BadgeText() == "LIVE"; })) << Notice();
  EXPECT_EQ(Viewer().Username(), QStringLiteral("ann"));
}

TEST_F(ViewerWindowTest, ShowsAServersCamerasTogetherOneAloneAndOneAfterTheOther) {
  std::string cameras = "RDXVIEWER\r\n";
  const ScriptedServer server([&](const std::string& request, ScriptedServer::Connection& to) {
    const bool asks = fakes::TargetOf(request).find("$rdxviewer") != std::string::npos;
    to.Send(AnswerBytes(200, asks ? cameras : fakes::SmallJpeg()));
  });
  for (const char* camera : {"1", "2"}) {
    cameras.append("CAM:d").append(camera).append("\tDoor\t").append(server.Url("/live/")).append(camera) += "\r\n";
  }
  const auto asked_alone = [&](const char* camera) {
    return std::ranges::count_if(server.Requests(), [&](const auto& each) {
      return fakes::TargetOf(each) == "/live/" + std::string(camera) + "/:?live-special0640x0480080";
    });
  };
  PlayerOptions options;
  options.camera = "127.0.0.1:" + std::to_string(server.Port());
  options.all = true;
  Open(options);
  const VideoServerPush& viewer = window->findChild<VideoServerPushWidget*>()->Control();
  auto* const video = window->findChild<QWidget*>(QStringLiteral("VideoStream"));
  ASSERT_TRUE(RunUntil([&] { return viewer.MultiCam.Enabled && video->isVisible(); }));
  // Two tiles of the upper row of four.
  const QPoint second(video->width() * 3 / 4, video->height() / 4);
  EXPECT_EQ(window->windowTitle().toStdString(), "Mosaic of 2 – Orbelcast");
  QTest::mouseDClick(video, Qt::LeftButton, {}, second);
  EXPECT_TRUE(RunUntil([&] { return asked_alone("2") > 0 && !viewer.MultiCam.Enabled; }));
  EXPECT_EQ(asked_alone("1"), 0);
  QTest::mouseDClick(video, Qt::LeftButton, {}, second);
  EXPECT_TRUE(RunUntil([&] { return viewer.MultiCam.Enabled.Get(); }));

  options.all = false;
  options.kiosk = true;
  options.tour = 0.2;
  Open(options);
  EXPECT_TRUE(RunUntil([&] { return asked_alone("1") > 0; }));
  EXPECT_TRUE(RunUntil([&, before = asked_alone("2")] { return asked_alone("2") > before; }));
  for (const auto key : {Qt::Key_Escape, Qt::Key_F11, Qt::Key_F}) QTest::keyClick(window.get(), key);
  EXPECT_TRUE(window->isVisible() && window->isFullScreen());
  QTest::keyClick(window.get(), Qt::Key_Q, Qt::ControlModifier);
  EXPECT_FALSE(window->isVisible());
}

}  // namespace
}  // namespace orbelcast
