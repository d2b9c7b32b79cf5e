// A whole mosaic on the real loop, over loopback: many cameras, a third of them dead in every way there is.

#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <string>

#include "assembly/headless_platform.h"
#include "fakes/scripted_server.h"
#include "fakes/small_jpeg.h"
#include "viewer/video_server_push.h"

namespace orbelcast {
namespace {

using fakes::AnswerBytes;
using fakes::ScriptedServer;
using fakes::SmallJpeg;
using To = ScriptedServer::Connection;

constexpr int kSide = 8;
constexpr int kCameras = kSide * kSide;
constexpr int kTilePixels = 20;
/// What the decoder makes of the small picture.
constexpr Color kGrey = Rgb(127, 127, 127);

long ResidentKilobytes() {
  std::ifstream file("/proc/self/statm");
  long size = 0;
  long pages = 0;
  file >> size >> pages;
  return pages * (sysconf(_SC_PAGESIZE) / 1024);
}

class MosaicTest : public testing::Test {
 protected:
  /// A mosaic that goes round as fast as it can.
  void Show(const std::string& cameras, int side) {
    viewer->Resize(static_cast<float>(side * kTilePixels * 15), static_cast<float>(side * kTilePixels * 15));
    viewer->MultiCam.Interval = 1;
    viewer->Events.StreamInfo.Listen([this](std::int32_t, std::int32_t) { ++rounds; });
    viewer->MultiCamView(cameras);
  }
  void RunRounds(int count) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(90);
    while (rounds < count && std::chrono::steady_clock::now() < end) host.Get().loop.Queue().HandleNext();
    ASSERT_GE(rounds, count);
  }
  Color Middle(int index, int side) const {
    return viewer->VideoStream.Image().Point(index % side * kTilePixels + kTilePixels / 2,
                                             index / side * kTilePixels + kTilePixels / 2);
  }

  HeadlessPlatform host;
  std::shared_ptr<VideoServerPush> viewer = VideoServerPush::Create(host.Get());
  int rounds = 0;
};

TEST_F(MosaicTest, GoesRoundManyCamerasOfWhichAThirdIsDead) {
  ScriptedServer live(AnswerBytes(200, SmallJpeg()));
  ScriptedServer missing(AnswerBytes(404, SmallJpeg()));
  ScriptedServer resets([](const std::string&, To& to) { to.Reset(); });
  int closed_port = 0;
  {
    const ScriptedServer gone(AnswerBytes(200));
    closed_port = gone.Port();
  }
  std::string cameras;
  for (int i = 0; i < kCameras; ++i) {
    const std::string path = "/cam " + std::to_string(i) + "/ann:pw";
    std::string dead = i % 2 == 0 ? missing.Url(path) : "http://127.0.0.1:" + std::to_string(closed_port) + path;
    if (i == 0) dead = resets.Url(path);  // one alone: each of its connections is a thread of the server's
    cameras += (i % 3 == 0 ? dead : live.Url(path)) + "\r\n";
  }
  Show(cameras, kSide);
  RunRounds(5);
  [[maybe_unused]] const long before = ResidentKilobytes();  // The sanitizers' own memory grows too.
  RunRounds(25);
  for (int i = 0; i < kCameras; ++i) EXPECT_EQ(Middle(i, kSide), i % 3 == 0 ? Rgb(0, 0, 0) : kGrey) << i;
  // Each tile has a request object of its own, and they share their connections.
  EXPECT_GE(live.Requests().size(), 25u * 42);
  EXPECT_LE(live.Connections(), 2);
  EXPECT_LE(missing.Connections(), 2);
  EXPECT_EQ(fakes::TargetOf(live.Requests().front()), "/cam 1/ann:pw?live-special0020x0020080");
#ifndef __SANITIZE_ADDRESS__
  // The servers' own records and the stacks of the connections that they reset take some 2 MiB of it; a request object
  // kept for each tile that was fetched would take ten times as much.
  EXPECT_LT(ResidentKilobytes() - before, 6 * 1024);
#endif
}

}  // namespace
}  // namespace orbelcast
