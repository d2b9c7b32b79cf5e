// The player's window as a program has it: what F5 and the options do.

#include "player/player_window.h"

#include <gmock/gmock.h>

#include <QTemporaryDir>
#include <QTest>
#include <algorithm>
#include <memory>

#include "fakes/scripted_server.h"
#include "fakes/small_jpeg.h"
#include "player/user_control1.h"
#include "widgets/qt_platform.h"

namespace orbelcast {
namespace {

using fakes::AnswerBytes;
using fakes::ScriptedServer;
using fakes::TargetOf;

/// Milliseconds: far more than anything here takes.
constexpr int kLimit = 20'000;

class PlayerWindowTest : public testing::Test {
 protected:
  PlayerWindowTest() {
    qputenv("ORBELCAST_REGISTRY", folder.filePath(QStringLiteral("registry.json")).toLocal8Bit());
    options.camera = "127.0.0.1:" + std::to_string(server->Port());
  }
  void Open() {
    window = std::make_unique<PlayerWindow>(platform.Get(), platform.Requests(), options);
    window->show();
    ASSERT_TRUE(QTest::qWaitFor([&] { return Player().CamList.ListIndex() == 0; }, kLimit));
  }
  UserControl1& Player() { return window->findChild<PlayerWidget*>()->Control(); }
  std::ptrdiff_t Asked(const std::string& part) const {
    return std::ranges::count_if(server->Requests(),
                                 [&](const auto& each) { return TargetOf(each).find(part) != std::string::npos; });
  }

  std::unique_ptr<ScriptedServer> server =
      std::make_unique<ScriptedServer>([this](const std::string& request, ScriptedServer::Connection& to) {
        if (TargetOf(request).find("$rdxviewer") == std::string::npos) {
          to.Send(AnswerBytes(200, fakes::SmallJpeg()));
          return;
        }
        std::string text = "RDXVIEWER\r\n";
        for (const char* camera : {"d1\tDoor\t", "d2\tYard\t"})
          text += "CAM:" + std::string(camera) + server->Url("/live/") + camera[1] + "\r\n";
        to.Send(AnswerBytes(200, text + "\r\n"));
      });
  QTemporaryDir folder;
  PlayerOptions options;
  QtPlatform platform;
  std::unique_ptr<PlayerWindow> window;
};

TEST_F(PlayerWindowTest, F5KeepsTheCameraThatIsChosenAndConnectsAgain) {
  Open();
  Player().CamList.Choose(1);
  ASSERT_TRUE(QTest::qWaitFor([&] { return Player().VS->VideoStream.Visible && Asked("/live/2") > 0; }, kLimit));
  Player().VS->Disconnect();
  const auto before = Asked("/live/2");
  QTest::keyClick(window.get(), Qt::Key_F5);
  EXPECT_TRUE(QTest::qWaitFor([&] { return Player().CamList.ListIndex() == 1 && Asked("/live/2") > before; }, kLimit));
  EXPECT_EQ(Asked("$rdxviewer"), 2);
}

// There everything stands where it was designed, so that is the window's size.
TEST_F(PlayerWindowTest, AFixedLayoutFillsTheWindowThatOpens) {
  options.fixed_layout = true;
  Open();
  const QWidget* bar = window->findChild<QWidget*>(QStringLiteral("PlayerControls"));
  EXPECT_EQ(bar->geometry(), QRect(0, 272, 349, 117));
  EXPECT_EQ(window->size(), QSize(353, 396));
}

}  // namespace
}  // namespace orbelcast
