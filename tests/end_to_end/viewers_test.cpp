// Whole viewers on the real loop, over loopback: dead cameras beside live ones.

#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>
#include <functional>
#include <limits>
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

using fakes::ScriptedServer;
using fakes::SmallJpeg;
using std::chrono::milliseconds;

std::string Answer(const std::string& body) {
  return "HTTP/1.1 200 OK\r\nServer: test\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}

class ViewersTest : public testing::Test {
 protected:
  std::shared_ptr<VideoServerPush> Viewer(std::int16_t rate) {
    auto viewer = VideoServerPush::Create(host.Get());
    viewer->Resize(320 * 15, 240 * 15);
    viewer->FrameRate(rate);
    return viewer;
  }
  /// Connects as a handler would: the wait for the answer suspends nobody else.
  void ConnectInHandler(VideoServerPush* viewer, const std::string& url) {
    host.Get().loop.RunHandler([viewer, url] { viewer->Connect(url); });
  }
  bool Run(
      milliseconds time, const std::function<bool()>& done = [] { return false; }) {
    return fakes::RunLoop(host.Get().loop.Queue(), time, done);
  }

  HeadlessPlatform host;
};

TEST_F(ViewersTest, DeadCamerasTakeNothingFromLiveOnes) {
  ScriptedServer live(Answer(SmallJpeg()));
  ScriptedServer dead([](const std::string&, ScriptedServer::Connection& to) { to.Never(); });
  constexpr int kEach = 8;
  constexpr int kRate = 20;
  constexpr double kSeconds = 2;
  std::vector<std::shared_ptr<VideoServerPush>> viewers;
  int frames = 0;
  for (int i = 0; i < kEach; ++i) {
    viewers.push_back(Viewer(kRate));
    ConnectInHandler(viewers.back().get(), dead.Url("/dead"));
    viewers.push_back(Viewer(kRate));
    viewers.back()->VideoStream.Refreshed.Listen([&frames] { ++frames; });
    ConnectInHandler(viewers.back().get(), live.Url("/live"));
  }
  ASSERT_TRUE(Run(milliseconds(2000), [&] { return frames >= kEach; }));
  frames = 0;
  Run(milliseconds(static_cast<int>(kSeconds * 1000)));
  EXPECT_GE(frames, 0.95 * kEach * kRate * kSeconds);
  for (int i = 0; i < 2 * kEach; i += 2) EXPECT_FALSE(viewers[static_cast<std::size_t>(i)]->VideoStream.Visible);
}

// Ten minutes of thirty pictures a second, stepped by hand, each decoded and scanned for motion.
TEST(LongStreamTest, GrowsNoMemory) {
  fakes::FakePlatform world;
  TurboJpegDecoder decoder;
  Platform platform = world.platform.With(decoder);
  const std::string picture = SmallJpeg();
  world.http.answers = {
      {.headers = {{"Date", "Wed, 31 Jan 2024 12:00:00 GMT"}}, .body = {picture.begin(), picture.end()}}};
  const auto viewer = VideoServerPush::Create(platform);
  viewer->Resize(320 * 15, 240 * 15);
  std::int16_t rate = 30;
  viewer->FrameRate(rate);
  viewer->MotionDetector(true);
  viewer->MotionByZones(true);
  viewer->Connect("http://camera/");
  const auto resident_kilobytes = [] {
    std::ifstream file("/proc/self/statm");
    long size = 0;
    long pages = 0;
    file >> size >> pages;
    return pages * (sysconf(_SC_PAGESIZE) / 1024);
  };
  const auto minute = [&] {
    world.queue.Advance(std::chrono::minutes(1));
    world.http.log.clear();
  };
#ifdef __SANITIZE_ADDRESS__
  constexpr int kMinutes = 2;  // Nothing to measure: the sanitizer keeps freed memory for a while.
  constexpr long kMostKilobytes = std::numeric_limits<long>::max();
#else
  constexpr int kMinutes = 10;
  constexpr long kMostKilobytes = 1024;
#endif
  minute();
  const long before = resident_kilobytes();
  for (int i = 1; i < kMinutes; ++i) minute();
  EXPECT_GT(world.http.sent, kMinutes * 1790);
  EXPECT_LT(resident_kilobytes() - before, kMostKilobytes);
}

}  // namespace
}  // namespace orbelcast
