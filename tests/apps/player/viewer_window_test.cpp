// What the viewer's window tells a person of its camera, and how it shows several.

#include "player/viewer_window.h"

#include <gmock/gmock.h>

#include <QTest>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <memory>

#include "fakes/run_loop.h"
#include "fakes/scripted_server.h"
#include "fakes/small_jpeg.h"
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
  /// What the notice says; empty while it is hidden.
  std::string Notice() const {
    const auto* notice = window->findChild<QWidget*>(QStringLiteral("notice"));
    return notice->isVisible() ? notice->accessibleName().toStdString() : std::string();
  }

  QtPlatform platform;
  std::unique_ptr<ViewerWindow> window;
};

TEST_F(ViewerWindowTest, SaysWhyThereIsNoPicture) {
  const std::pair<std::string, const char*> answers[] = {
      {AnswerBytes(200, "<html>a camera server's page</html>"), "is no JPEG picture"},
      {AnswerBytes(401), "does not accept this user name"},
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
TEST_F(ViewerWindowTest, TellsThatThePictureIsOldUntilTheNextOneComes) {
  std::atomic<int> asked = 0;
  std::atomic<bool> goes_on = false;
  const ScriptedServer server([&](const std::string&, ScriptedServer::Connection& to) {
    while (asked > 3 && !goes_on && to.Pause(milliseconds(10))) continue;
    ++asked;
    to.Send(AnswerBytes(200, fakes::SmallJpeg()));
  });
  Open(server.Url());
  EXPECT_TRUE(RunUntil([&] { return Notice().starts_with("No picture since "); })) << Notice();
  goes_on = true;
  EXPECT_TRUE(RunUntil([&] { return Notice().empty(); })) << Notice();
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
  // Two tiles of the upper row of four.
  const QPoint second(video->width() * 3 / 4, video->height() / 4);
  ASSERT_TRUE(RunUntil([&] { return viewer.MultiCam.Enabled && video->isVisible(); }));
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
