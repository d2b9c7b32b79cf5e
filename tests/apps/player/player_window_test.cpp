// The player's window as a program has it: what F5 and the options do.

#include "player/player_window.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <QTest>
#include <algorithm>
#include <string>

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

TEST(PlayerWindowTest, F5KeepsTheCameraThatIsChosenAndConnectsAgain) {
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
  const QTemporaryDir folder;
  qputenv("ORBELCAST_REGISTRY", folder.filePath(QStringLiteral("registry.json")).toLocal8Bit());
  QtPlatform platform;
  PlayerOptions options;
  options.camera = "127.0.0.1:" + std::to_string(server.Port());
  options.fixed_layout = true;
  PlayerWindow window(platform, options);
  window.show();
  // Everything stands where it was designed, from the beginning, so that is the window's size.
  EXPECT_EQ(window.size(), QSize(353, 396));
  UserControl1& player = window.findChild<PlayerWidget*>()->Control();
  ASSERT_TRUE(QTest::qWaitFor([&] { return player.CamList.ListIndex() == 0; }, kLimit));
  player.CamList.Choose(1);
  ASSERT_TRUE(QTest::qWaitFor([&] { return player.VS->VideoStream.Visible && asked("/live/2") > 0; }, kLimit));
  player.VS->Disconnect();
  const auto before = asked("/live/2");
  QTest::keyClick(&window, Qt::Key_F5);
  EXPECT_TRUE(QTest::qWaitFor([&] { return player.CamList.ListIndex() == 1 && asked("/live/2") > before; }, kLimit));
  EXPECT_EQ(asked("$rdxviewer"), 2);
}

}  // namespace
}  // namespace orbelcast
