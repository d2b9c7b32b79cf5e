// What the viewer's window tells a person of its camera.

#include "player/viewer_window.h"

#include <gmock/gmock.h>

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

}  // namespace
}  // namespace orbelcast
