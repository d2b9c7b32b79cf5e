// The stream viewer on a scripted server and a clock that the test moves: what goes by the time, and what goes wrong.
// Scripts (tests/scripts) have what a viewer holds and tells when all goes well.

#include <gmock/gmock.h>

#include <deque>

#include "fakes/event_log.h"
#include "fakes/fake_platform.h"
#include "viewer/video_server_push.h"

namespace orbelcast {
namespace {

using fakes::Answer;
using fakes::EventLog;
using fakes::FakePlatform;
using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto kUrl = "http://camera/live/1";

/// A picture in one colour, 640 × 480, padded to `size` bytes.
std::vector<std::uint8_t> Picture(std::uint8_t red, std::uint8_t green, std::uint8_t blue, std::size_t size = 5) {
  std::vector<std::uint8_t> bytes{red, green, blue, 64, 48};
  bytes.resize(size);
  return bytes;
}

Answer Good(std::vector<std::uint8_t> body = Picture(10, 20, 30)) {
  return {.headers = {{"Server", "Cam/1"}, {"Date", "Wed"}, {"HolmvaneStatus", "fine"}}, .body = std::move(body)};
}

Answer WithStatus(int status) {
  return {.status = status, .headers = {}, .body = {}};
}

class ViewerTest : public testing::Test {
 protected:
  ViewerTest() { viewer->Resize(9600, 7200); }

  void SetFrameRate(std::int16_t rate) { viewer->FrameRate(rate); }
  void Run(int seconds) { world.queue.Advance(milliseconds(1000) * seconds); }
  /// Connects to a server that answers so.
  void Connect(std::deque<Answer> answers) {
    world.http.answers = std::move(answers);
    viewer->Connect(kUrl);
  }
  /// A colour of the video area.
  Color At(int x, int y) const { return viewer->VideoStream.Image().Point(x, y); }

  FakePlatform world;
  std::shared_ptr<VideoServerPush> viewer = VideoServerPush::Create(world.platform);
  EventLog events{*viewer};
};

// Those of a failed one too; nothing of them is validated.
TEST_F(ViewerTest, HeadersOfTheFirstAnswerAreTold) {
  events.skip_time_codes = false;
  Answer answer = WithStatus(500);
  answer.headers = {{"VigilboxInfo", "1 welcome"}, {"PlugIns", "plate reader"}};
  Connect({answer});
  EXPECT_THAT(events.Take(), testing::IsSupersetOf({"VigilboxInfo(1 welcome)", "Plugin(plate reader)"}));

  answer = Good();
  answer.headers = {{"VigilboxInfo", "0 nothing"}, {"RC_TCR", "20240"}, {"Recording", "yes"}};
  Connect({answer, Good()});
  EXPECT_THAT(events.Take(),
              ElementsAre("Status(Connecting...)", "VigilboxTCR(2024,0,,,,,00,20240)", "Status(Streaming...\r\n\r\n)",
                          "VigilboxTCR(2024,01,31,12,00,00,00,20240131120000)", "Connected"));
  EXPECT_EQ(viewer->StatusDisplay.Image().Point(25, 8), Rgb(255, 255, 192));  // no icon: it has no capital letter
}

// The cap on a second's pictures is one more than the frame rate; what is drawn again counts as one.
TEST_F(ViewerTest, ASecondIsCountedInWholeKilobytesRoundedToEven) {
  SetFrameRate(3);
  viewer->MasterTimer.Interval = 20;  // A timer that fires faster than it was asked to.
  Connect({Good(Picture(9, 9, 9, 512))});
  EXPECT_EQ(viewer->lStatus.Caption.Get(), "Streaming...\r\nCam/1\r\n");  // Half a kilobyte is none.
  for (const auto& [bytes, line] :
       {std::pair(384u, "2 KB/s (16Kbps) -> 4 fps"), std::pair(640u, "2 KB/s (16Kbps) -> 4 fps"),
        std::pair(4096u, "16 KB/s (128Kbps) -> 4 fps"), std::pair(128u, "16 KB/s (128Kbps) -> 4 fps")}) {
    world.http.answers = {Good(Picture(9, 9, 9, bytes))};
    events.Take();
    Run(1);
    EXPECT_EQ(viewer->lStatus.Caption.Get(), line);
  }
  EXPECT_THAT(events.Take(), IsEmpty());
  world.http.answers = {Good(Picture(9, 9, 9, 4096))};
  viewer->Resize(4800, 3600);
  viewer->Resize(9600, 7200);
  EXPECT_EQ(At(639, 479), Rgb(9, 9, 9));
  Run(1);
  EXPECT_THAT(events.Take(), ElementsAre("StreamInfo(8448,4)"));
}

TEST_F(ViewerTest, FailedTicksPaintCountAndRecover) {
  Connect({Good(), Good(), WithStatus(500)});
  events.Take();
  Run(4);
  EXPECT_THAT(events.Take(), IsEmpty());
  Run(6);
  EXPECT_THAT(events.Take(), ElementsAre("ConnectionBroken", "ConnectionBroken"));

  // A good frame shows again and starts the count anew.
  world.http.answers = {WithStatus(500), WithStatus(500), Good(), WithStatus(500)};
  Run(7);
  EXPECT_THAT(events.Take(), ElementsAre("Connected"));
  // With AutoReconnect nothing is told, until it is back.
  viewer->AutoReconnect(true);
  Run(60);
  EXPECT_THAT(events.Take(), IsEmpty());
  world.http.answers = {Good(Picture(4, 5, 6, 2048))};
  Run(1);
  EXPECT_THAT(events.Take(), ElementsAre("StreamInfo(2048,1)"));
  EXPECT_EQ(At(320, 240), Rgb(4, 5, 6));
}

TEST_F(ViewerTest, WhyThereIsNoPictureIsAValue) {
  const auto failing = [](HttpFailure failure) {
    return Answer{.headers = {}, .body = {}, .fails = true, .failure = failure};
  };
  const std::pair<Answer, Failure> cases[] = {
      {failing(HttpFailure::kUnreachable), {FailureKind::kUnreachable}},
      {failing(HttpFailure::kTimedOut), {FailureKind::kTimedOut}},
      {failing(HttpFailure::kCutShort), {FailureKind::kCutShort}},
      {WithStatus(404), {FailureKind::kStatus, 404}},
      {Good({1, 2}), {FailureKind::kNoPicture}},
      {Good({1, 2, 3, 64, 0}), {FailureKind::kDamagedPicture}},
  };
  SetFrameRate(30);  // Redraws, which count as frames, use up none of it here.
  for (const auto& [answer, failure] : cases) {
    Connect({answer});
    EXPECT_EQ(viewer->LastFailure(), failure);
    Connect({Good()});
    EXPECT_EQ(viewer->LastFailure(), Failure());
    world.http.answers = {answer, Good()};
    world.queue.Advance(milliseconds(34));
    viewer->Resize(9600, 7200);  // The old picture is drawn once more, and is no newer.
    EXPECT_EQ(At(10, 10), Rgb(10, 20, 30));
    EXPECT_EQ(viewer->LastFailure(), failure);
    world.queue.Advance(milliseconds(34));
    EXPECT_EQ(viewer->LastFailure(), Failure());
  }
  viewer->MultiCamView("http://tile/\r\n");
  world.http.answers = {WithStatus(404)};
  world.queue.Advance(milliseconds(500));
  EXPECT_EQ(viewer->LastFailure(), (Failure{FailureKind::kStatus, 404}));
}

TEST_F(ViewerTest, RequestEndTreatsTheLastAnswerAsAFrame) {
  Connect({Good(), Good(), WithStatus(500)});
  events.Take();
  viewer->RequestEnd();
  EXPECT_THAT(events.Take(), ElementsAre("Connected"));

  Run(1);
  for (int i = 0; i < 8; ++i) viewer->RequestEnd();  // Alone it never gets to the fifth failure.
  EXPECT_THAT(events.Take(), IsEmpty());
  Run(5);                // The first tick finds this second's frames used up; four fail.
  viewer->RequestEnd();  // This failure is the fifth.
  EXPECT_THAT(events.Take(), ElementsAre("ConnectionBroken", testing::StartsWith("Status("), "Disconnected"));
}

TEST(ViewerScaleTest, PixelsAreTheScreensInEachDirection) {
  FakePlatform world;
  world.screen.twips_x = 12;
  world.screen.twips_y = 20;
  const auto viewer = VideoServerPush::Create(world.platform);
  viewer->Resize(640 * 12, 480 * 20);
  const PictureBox& thumbnail = viewer->MotionPicture[2];
  EXPECT_THAT((std::vector<float>{thumbnail.Left, thumbnail.Top, thumbnail.Width, thumbnail.Height}),
              ElementsAre(-5 * 12, -5 * 20, 89 * 12, 82 * 20));
  EXPECT_EQ(viewer->StatusDisplay.Top, (480 - 26) * 20);
  const auto& area = viewer->VideoStream;
  world.http.answers = {Good(Picture(5, 5, 5)), Good(Picture(5, 5, 5)), WithStatus(500)};
  viewer->Connect(kUrl);
  EXPECT_EQ(viewer->GetPicture()->Point(639, 479), Rgb(5, 5, 5));
  world.queue.Advance(milliseconds(1000));  // The picture of a failed request, 16 × 16 here, in the middle.
  EXPECT_EQ(area.Image().Point(312, 232), Rgb(1, 2, 3));
  EXPECT_EQ(area.Image().Point(311, 232), Rgb(5, 5, 5));
  world.http.answers = {Good(Picture(7, 7, 7))};
  viewer->MultiCamView("http://a/\r\nhttp://b/\r\nhttp://c/\r\nhttp://d/\r\n");
  world.queue.Advance(milliseconds(2000));
  EXPECT_EQ(world.http.Opened().back(), "http://d/?live-special0320x0200050");
  EXPECT_EQ(area.Image().Point(639, 479), Rgb(7, 7, 7));
  // Nothing draws a mosaic anew at another size, before its next tile.
  viewer->Resize(320 * 12, 600 * 20);
  EXPECT_EQ(std::get<const Surface*>(viewer->PictureToSave())->Point(319, 599), Rgb(0, 0, 0));
}

TEST_F(ViewerTest, ATickTellsItsTimeThenItsMotionThenItsSecond) {
  viewer->MotionDetector(true);
  viewer->MotionByZones(true);
  std::int32_t sensitivity = 50;
  viewer->MotionSensivity(sensitivity);
  viewer->ShowMotion(true);
  Connect({Good(), Good(Picture(64, 64, 64)), Good(Picture(255, 255, 255, 2048))});
  events.Take();
  events.skip_time_codes = false;
  Run(1);
  EXPECT_THAT(events.Take(),
              ElementsAre(testing::StartsWith("VigilboxTCR"), "MotionArea(0,0,88,80)", "MotionDetected(0,0,88,80)",
                          "MotionDetectedArea(1)", "Connected", "StreamInfo(2048,1)"));
  EXPECT_EQ(viewer->MotionPicture[2].Image().Point(88, 40), Rgb(128, 128, 0));
  EXPECT_EQ(viewer->MotionPicture[0].Image().Point(88, 81), Rgb(255, 255, 255));  // the newest frame's thumbnail
  Run(1);
  EXPECT_THAT(events.Take(), ElementsAre(testing::StartsWith("VigilboxTCR"), "StreamInfo(2048,1)"));
}

}  // namespace
}  // namespace orbelcast
