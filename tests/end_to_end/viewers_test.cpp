// Whole viewers on the real loop, over loopback: dead cameras beside live ones.

#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "assembly/headless_platform.h"
#include "fakes/fake_platform.h"
#include "fakes/run_loop.h"
#include "fakes/scripted_server.h"
#include "fakes/small_jpeg.h"
#include "viewer/video_server_push.h"

namespace orbelcast {
namespace {

using fakes::AnswerBytes;
using fakes::ScriptedServer;
using fakes::SmallJpeg;
using std::chrono::milliseconds;
using To = ScriptedServer::Connection;

#ifdef ORBELCAST_ASAN
constexpr bool kMeasured = false;  // The sanitizer keeps freed memory for a while.
#else
constexpr bool kMeasured = true;
#endif

/// 0 where nothing is measured.
long ResidentKilobytes() {
  if (!kMeasured) return 0;
  std::ifstream file("/proc/self/statm");
  long size = 0;
  long pages = 0;
  file >> size >> pages;
  return pages * (sysconf(_SC_PAGESIZE) / 1024);
}

class ViewersTest : public testing::Test {
 protected:
  /// Connects as a handler would: the wait for the answer suspends nobody else.
  std::shared_ptr<VideoServerPush> Connected(std::int16_t rate, const std::string& url) {
    auto viewer = VideoServerPush::Create(host.Get());
    viewer->Resize(320 * 15, 240 * 15);
    viewer->FrameRate(rate);
    host.Get().loop.RunHandler([viewer, url] { viewer->Connect(url); });
    return viewer;
  }
  bool Run(
      milliseconds time, const std::function<bool()>& done = [] { return false; }) {
    return fakes::RunLoop(host.Get().loop.Queue(), time, done);
  }

  HeadlessPlatform host;
  ScriptedServer live{AnswerBytes(200, SmallJpeg())};
};

TEST_F(ViewersTest, DeadCamerasTakeNothingFromLiveOnes) {
  ScriptedServer dead([](const std::string&, To& to) { to.Never(); });
  constexpr int kEach = 8;
  constexpr int kRate = 20;
  constexpr int kSeconds = 2;
  std::vector<std::shared_ptr<VideoServerPush>> viewers;
  int frames = 0;
  for (int i = 0; i < kEach; ++i) {
    viewers.push_back(Connected(kRate, dead.Url("/dead")));
    viewers.push_back(Connected(kRate, live.Url("/live")));
    viewers.back()->VideoStream.Refreshed.Listen([&frames] { ++frames; });
  }
  ASSERT_TRUE(Run(milliseconds(2000), [&] { return frames >= kEach; }));
  frames = 0;
  Run(milliseconds(kSeconds * 1000));
  // One that held up the others until its time-out would leave them next to none; a busy machine takes some.
  EXPECT_GE(frames, 0.75 * kEach * kRate * kSeconds);
}

TEST_F(ViewersTest, AMosaicGoesRoundManyCamerasOfWhichAThirdIsDead) {
  constexpr int kSide = 8;
  constexpr int kCameras = kSide * kSide;
  constexpr int kTilePixels = 20;
  constexpr Color kGrey = Rgb(127, 127, 127);  // what the decoder makes of the small picture
  ScriptedServer missing(AnswerBytes(404, SmallJpeg()));
  ScriptedServer resets([](const std::string&, To& to) { to.Reset(); });
  std::string cameras;
  for (int i = 0; i < kCameras; ++i) {
    const std::string path = "/cam " + std::to_string(i) + "/ann:pw";
    std::string dead = i % 2 == 0 ? missing.Url(path) : "http://127.0.0.1:1" + path;
    if (i == 0) dead = resets.Url(path);  // one alone: each of its connections is a thread of the server's
    cameras += (i % 3 == 0 ? dead : live.Url(path)) + "\r\n";
  }
  const auto viewer = VideoServerPush::Create(host.Get());
  viewer->Resize(kSide * kTilePixels * 15, kSide * kTilePixels * 15);
  viewer->MultiCam.Interval = 1;
  int rounds = 0;
  viewer->Events.StreamInfo.Listen([&](std::int32_t, std::int32_t) { ++rounds; });
  viewer->MultiCamView(cameras);
  ASSERT_TRUE(Run(milliseconds(90'000), [&] { return rounds >= 5; }));
  const long before = ResidentKilobytes();
  ASSERT_TRUE(Run(milliseconds(90'000), [&] { return rounds >= 25; }));
  for (int i = 0; i < kCameras; ++i) {
    const int x = i % kSide * kTilePixels + kTilePixels / 2;
    const int y = i / kSide * kTilePixels + kTilePixels / 2;
    EXPECT_EQ(viewer->VideoStream.Image().Point(x, y), i % 3 == 0 ? Rgb(0, 0, 0) : kGrey) << i;
  }
  // Each tile has a request object of its own, and they share their connections.
  EXPECT_LE(live.Connections(), 2);
  EXPECT_LE(missing.Connections(), 2);
  // The servers' own records and the stacks of the connections that they reset take some 2 MiB of it; a request object
  // kept for each tile that was fetched would take ten times as much.
  EXPECT_LT(ResidentKilobytes() - before, 6 * 1024);
}

// Four minutes of thirty pictures a second, stepped by hand, each decoded and scanned for motion.
TEST(LongStreamTest, GrowsNoMemory) {
  fakes::FakePlatform world;
  TurboJpegDecoder decoder;
  Platform platform = world.platform.With(decoder);
  const std::string picture = SmallJpeg();
  world.http.answers = {{.headers = {}, .body = {picture.begin(), picture.end()}}};
  const auto viewer = VideoServerPush::Create(platform);
  viewer->Resize(320 * 15, 240 * 15);
  std::int16_t rate = 30;
  viewer->FrameRate(rate);
  viewer->MotionDetector(true);
  viewer->MotionByZones(true);
  viewer->Connect("http://camera/");
  const auto minute = [&] {
    world.queue.Advance(std::chrono::minutes(1));
    world.http.log.clear();
  };
  const int minutes = kMeasured ? 4 : 2;
  minute();
  const long before = ResidentKilobytes();
  for (int i = 1; i < minutes; ++i) minute();
  EXPECT_GT(world.http.sent, minutes * 1790);
  // Of a picture 50 bytes may stay.
  EXPECT_LT(ResidentKilobytes() - before, 256);
}

}  // namespace
}  // namespace orbelcast
