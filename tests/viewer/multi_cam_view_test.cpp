// The mosaic on a scripted server and a clock that the test moves.

#include <gmock/gmock.h>

#include "fakes/event_log.h"
#include "fakes/fake_platform.h"
#include "viewer/video_server_push.h"

namespace orbelcast {
namespace {

using fakes::Answer;
using fakes::EventLog;
using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto kFourCameras = "http://a/1\r\nhttp://b/2\r\nhttp://c/3\r\nhttp://d/4\r\n";
constexpr Color kBlack = Rgb(0, 0, 0);
constexpr Color kGreen = Rgb(0, 255, 0);

/// What a tile of 320 × 240 pixels is asked for, of the camera at `address`.
std::string Asked(const std::string& address) {
  return "http://" + address + "?live-special0320x0200050";
}

Answer Picture(std::uint8_t red) {
  return {.headers = {}, .body = {red, 1, 1, 32, 24}};
}
Answer WithBodyAndStatus(int status) {
  return {.status = status, .headers = {}, .body = {9, 9, 9, 32, 24}};
}
Answer After(milliseconds delay, Answer answer) {
  answer.delay = delay;
  return answer;
}

/// A loop whose yields look at the queue where they stand, as a host's own stack does: what is due runs inside them.
class NestingLoop final : public MessageLoop {
 public:
  explicit NestingLoop(MessageLoop& loop) : loop_(loop) {}
  EventQueue& Queue() override { return loop_.Queue(); }
  void RunHandler(std::function<void()> handler) override { loop_.RunHandler(std::move(handler)); }
  void Yield() override {
    if (on_yield) on_yield();
    if (nesting) Queue().HandleDue();
  }
  void Wait(Completion& completion) override { loop_.Wait(completion); }

  std::function<void()> on_yield;
  bool nesting = false;

 private:
  MessageLoop& loop_;
};

class MultiCamViewTest : public testing::Test {
 protected:
  MultiCamViewTest() {
    viewer->Resize(640 * 15, 480 * 15);
    viewer->VideoStream.Refreshed.Listen([this] { ++refreshes; });
    world.http.answers = {Picture(100)};
  }

  void Tick(int count = 1) { world.queue.Advance(milliseconds(500) * count); }
  /// The tile's colour in its middle.
  Color Middle(int column, int row) const {
    return viewer->VideoStream.Image().Point(column * 320 + 160, row * 240 + 120);
  }
  Color Mark(int column, int row) const { return viewer->VideoStream.Image().Point(column * 320 + 2, row * 240 + 5); }
  fakes::FakePlatform world;
  NestingLoop loop{world.loop};
  Platform platform = world.platform.With(loop);
  std::shared_ptr<VideoServerPush> viewer = VideoServerPush::Create(platform);
  EventLog events{*viewer};
  int refreshes = 0;
};

TEST_F(MultiCamViewTest, FetchesATileATickAndTellsEachRound) {
  viewer->MultiCamView(kFourCameras);
  world.http.log.clear();
  world.http.answers = {Picture(10), WithBodyAndStatus(404), Picture(30), {.headers = {}, .body = {1}}, Picture(50)};
  Tick();
  EXPECT_THAT(world.http.log, ElementsAre("Open GET " + Asked("a/1"), "LimitExchange 5000", "Send"));
  Tick(3);
  EXPECT_EQ(world.http.Opened().back(), Asked("d/4"));
  EXPECT_EQ(Middle(0, 0), Rgb(10, 1, 1));
  EXPECT_EQ(Middle(1, 0), kBlack);
  EXPECT_EQ(Middle(0, 1), Rgb(30, 1, 1));
  // One byte is no picture. The fourth tile is filled with both corners.
  EXPECT_EQ(Middle(1, 1), kBlack);
  EXPECT_EQ(Mark(1, 1), kBlack);
  EXPECT_THAT(events.Take(), IsEmpty());
  Tick();
  EXPECT_THAT(events.Take(), ElementsAre("StreamInfo(0,1)"));
  EXPECT_EQ(Middle(0, 0), Rgb(50, 1, 1));
  EXPECT_EQ(viewer->GetPictureArray(), Picture(50).body);
}

TEST_F(MultiCamViewTest, MarksTheTileWhileItIsFetched) {
  viewer->MultiCamView(kFourCameras);
  std::vector<Color> marks;
  std::vector<int> refreshed;
  refreshes = 0;
  loop.on_yield = [&] {
    marks.push_back(Mark(0, 0));
    refreshed.push_back(refreshes);
  };
  viewer->Dummy.Enabled = false;  // it yields as well
  Tick();
  EXPECT_THAT(marks, ElementsAre(kGreen, Rgb(100, 1, 1)));
  EXPECT_THAT(refreshed, ElementsAre(1, 2));
  for (const auto& [x, y] : {std::pair(1, 3), std::pair(6, 3)})
    EXPECT_NE(viewer->VideoStream.Image().Point(x, y), kGreen);
  // What cannot be decoded leaves the tile as it was, mark included.
  loop.on_yield = nullptr;
  world.http.answers = {{.headers = {}, .body = {1, 2, 3}}};
  Tick();
  EXPECT_EQ(Mark(1, 0), kGreen);
}

TEST_F(MultiCamViewTest, ADeadCameraCostsFiveSecondsAndLeavesItsTileBlack) {
  viewer->MultiCamView(kFourCameras);
  Tick();
  Answer never;
  never.never = true;
  world.http.answers = {never, Picture(20)};
  const auto begin = world.queue.Now();
  Tick();
  EXPECT_EQ(world.queue.Now() - begin, milliseconds(5500));
  EXPECT_EQ(Middle(1, 0), kBlack);
  EXPECT_THAT(viewer->GetPictureArray(), IsEmpty());
  Tick();
  EXPECT_EQ(Middle(0, 1), Rgb(20, 1, 1));
}

TEST_F(MultiCamViewTest, TheNextTileIsKeptFromOneMosaicToTheNext) {
  viewer->MultiCamView(kFourCameras);
  Tick(3);
  world.http.log.clear();
  viewer->MultiCamView("http://x/\r\nhttp://y/\r\n");
  Tick(2);
  EXPECT_THAT(events.Take(), ElementsAre("StreamInfo(0,1)"));
  EXPECT_EQ(world.http.Opened().front(), Asked("x/"));
  viewer->MultiCamView(kFourCameras);
  Tick();
  EXPECT_EQ(world.http.Opened().back(), Asked("c/3"));
}

TEST_F(MultiCamViewTest, WithoutALineEndThereIsNoCameraAndEveryTickIsARound) {
  viewer->MultiCamView("http://a/1");
  world.http.log.clear();
  refreshes = 0;
  Tick(2);
  EXPECT_THAT(events.Take(), ElementsAre("StreamInfo(0,1)", "StreamInfo(0,1)"));
  EXPECT_THAT(world.http.log, IsEmpty());
  EXPECT_EQ(refreshes, 0);
}

TEST_F(MultiCamViewTest, OnlyConnectEndsIt) {
  viewer->MultiCamView(kFourCameras);
  viewer->Disconnect();
  viewer->UserControl_Hide();
  viewer->StopGettingFrames();
  Tick();
  EXPECT_EQ(world.http.sent, 1);
  viewer->Connect("http://camera/", true);
  Tick(10);
  EXPECT_EQ(world.http.sent, 2);
}

TEST_F(MultiCamViewTest, ATickThatFallsDueDuringARequestRunsInsideTheCurrentOne) {
  viewer->MultiCamView(kFourCameras);
  loop.nesting = true;
  world.http.answers = {After(milliseconds(1200), Picture(1)), Picture(2), Picture(3)};
  Tick();  // The second tick was due when the first one had its picture.
  EXPECT_THAT(world.http.Opened(), ElementsAre(Asked("a/1"), Asked("b/2")));
  EXPECT_EQ(Middle(0, 0), Rgb(1, 1, 1));
  EXPECT_EQ(Middle(1, 0), Rgb(2, 1, 1));
  // What fell due meanwhile came once; the rhythm goes on.
  world.queue.Advance(milliseconds(300));
  EXPECT_EQ(world.http.Opened().size(), 3u);
}

TEST_F(MultiCamViewTest, ATickInsideTheFirstYieldFetchesTheSameTileAndTheIndexCountsBoth) {
  viewer->MultiCamView(kFourCameras);
  world.http.answers = {Picture(1), Picture(2), Picture(3)};
  bool once = true;
  loop.on_yield = [&] {
    loop.nesting = std::exchange(once, false);
    if (loop.nesting) world.queue.Block(milliseconds(500));
  };
  viewer->Dummy.Enabled = false;
  Tick();
  EXPECT_THAT(world.http.Opened(), ElementsAre(Asked("a/1"), Asked("a/1")));
  EXPECT_EQ(Middle(0, 0), Rgb(2, 1, 1));
  Tick();
  EXPECT_EQ(world.http.Opened().back(), Asked("c/3"));
}

}  // namespace
}  // namespace orbelcast
