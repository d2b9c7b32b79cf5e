// The mosaic on a scripted server and a clock that the test moves.

#include <gmock/gmock.h>

#include "fakes/event_log.h"
#include "fakes/fake_platform.h"
#include "fakes/rude_loop.h"
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

/// The address of a picture for a tile of 320 × 240 pixels, of the camera at `address`.
std::string Asked(const std::string& address) {
  return "http://" + address + "?live-special0320x0200050";
}

Answer Picture(std::uint8_t red) {
  return {.headers = {}, .body = {red, 1, 1, 32, 24}};
}

class MultiCamViewTest : public testing::Test {
 protected:
  MultiCamViewTest() {
    viewer->Resize(640 * 15, 480 * 15);
    viewer->VideoStream.Refreshed.Listen([this] { ++refreshes; });
    world.http.answers = {Picture(100)};
  }

  void Tick(int count = 1) { world.queue.Advance(milliseconds(500) * count); }
  /// Does that at the next yield, and at each one after it where it asks for it again.
  void AtYield(const std::function<void()>& act) {
    loop.act = act;
    Again();
  }
  void Again() { loop.rude_at = loop.steps; }
  /// The tile's colour in its middle.
  Color Middle(int column, int row) const {
    return viewer->VideoStream.Image().Point(column * 320 + 160, row * 240 + 120);
  }
  Color Mark(int column, int row) const { return viewer->VideoStream.Image().Point(column * 320 + 2, row * 240 + 5); }
  fakes::FakePlatform world;
  fakes::RudeLoop loop{world.loop};
  Platform platform = world.platform.With(loop);
  std::shared_ptr<VideoServerPush> viewer = VideoServerPush::Create(platform);
  EventLog events{*viewer};
  int refreshes = 0;
};

TEST_F(MultiCamViewTest, FetchesATileATickAndTellsEachRound) {
  viewer->MultiCamView(kFourCameras);
  world.http.log.clear();
  Answer dead;
  dead.never = true;
  world.http.answers = {Picture(10), dead, Picture(30), {.headers = {}, .body = {1}}, Picture(50)};
  Tick();
  EXPECT_THAT(world.http.log, ElementsAre("Open GET " + Asked("a/1"), "LimitExchange 5000", "Send"));
  const auto begin = world.queue.Now();
  Tick();
  EXPECT_EQ(world.queue.Now() - begin, milliseconds(5500));
  EXPECT_THAT(viewer->GetPictureArray(), IsEmpty());
  Tick();  // Two: the one that fell due meanwhile, and the next.
  EXPECT_EQ(Middle(0, 0), Rgb(10, 1, 1));
  EXPECT_EQ(Middle(1, 0), kBlack);
  EXPECT_EQ(Middle(0, 1), Rgb(30, 1, 1));
  // One byte is no picture. The fourth tile is filled with both corners.
  EXPECT_EQ(Middle(1, 1), kBlack);
  EXPECT_EQ(Mark(1, 1), kBlack);
  EXPECT_THAT(events.Take(), IsEmpty());
  Tick();
  EXPECT_THAT(events.Take(), ElementsAre("StreamInfo(0,1)"));
  EXPECT_EQ(viewer->GetPictureArray(), Picture(50).body);
}

TEST_F(MultiCamViewTest, MarksTheTileWhileItIsFetched) {
  viewer->MultiCamView(kFourCameras);
  world.http.answers = {Picture(100), {.headers = {}, .body = {1, 2, 3}}};
  std::vector<Color> marks;
  std::vector<int> refreshed;
  refreshes = 0;
  AtYield([&] {
    marks.push_back(Mark(0, 0));
    refreshed.push_back(refreshes);
    Again();
  });
  viewer->Dummy.Enabled = false;  // it yields as well
  Tick();
  EXPECT_THAT(marks, ElementsAre(kGreen, Rgb(100, 1, 1)));
  EXPECT_THAT(refreshed, ElementsAre(1, 2));
  // A picture that cannot be decoded leaves the tile as it was, mark included.
  loop.rude_at = -1;
  Tick();
  EXPECT_EQ(Mark(1, 0), kGreen);
}

// Each ends neither by what ends a stream nor by the next one, which begins with the tile that was due.
TEST_F(MultiCamViewTest, TheNextTileIsKeptFromOneMosaicToTheNext) {
  viewer->MultiCamView(kFourCameras);
  viewer->Disconnect();
  viewer->UserControl_Hide();
  viewer->StopGettingFrames();
  Tick(3);
  events.Take();
  world.http.log.clear();
  viewer->MultiCamView("http://x/\r\nhttp://y/\r\n");
  Tick(2);
  EXPECT_THAT(events.Take(), ElementsAre("StreamInfo(0,1)"));
  EXPECT_EQ(world.http.Opened().front(), Asked("x/"));
  viewer->MultiCamView(kFourCameras);
  Tick();
  EXPECT_EQ(world.http.Opened().back(), Asked("c/3"));
  viewer->MultiCamView("http://a/1");  // Without a line end it is no camera, and every tick is a round.
  Tick(2);
  EXPECT_THAT(events.Take(), ElementsAre("StreamInfo(0,1)", "StreamInfo(0,1)"));
}

TEST_F(MultiCamViewTest, ATickThatFallsDueDuringARequestRunsInsideTheCurrentOne) {
  viewer->MultiCamView(kFourCameras);
  AtYield([&] {
    Again();
    world.queue.HandleDue();
  });
  world.http.answers = {Picture(1), Picture(2), Picture(3)};
  world.http.answers.front().delay = milliseconds(1200);
  Tick();  // The second tick was due when the first one had its picture.
  EXPECT_THAT(world.http.Opened(), ElementsAre(Asked("a/1"), Asked("b/2")));
  EXPECT_EQ(Middle(0, 0), Rgb(1, 1, 1));
  EXPECT_EQ(Middle(1, 0), Rgb(2, 1, 1));
  // The tick that fell due meanwhile came once; the rhythm goes on.
  world.queue.Advance(milliseconds(300));
  EXPECT_EQ(world.http.Opened().size(), 3u);
}

TEST_F(MultiCamViewTest, ATickInsideTheFirstYieldFetchesTheSameTileAndTheIndexCountsBoth) {
  viewer->MultiCamView(kFourCameras);
  world.http.answers = {Picture(1), Picture(2), Picture(3)};
  AtYield([&] {
    world.queue.Block(milliseconds(500));
    world.queue.HandleDue();
  });
  viewer->Dummy.Enabled = false;
  Tick();
  EXPECT_THAT(world.http.Opened(), ElementsAre(Asked("a/1"), Asked("a/1")));
  EXPECT_EQ(Middle(0, 0), Rgb(2, 1, 1));
  Tick();
  EXPECT_EQ(world.http.Opened().back(), Asked("c/3"));
}

}  // namespace
}  // namespace orbelcast
