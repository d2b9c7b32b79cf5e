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

  std::int16_t SetFrameRate(std::int16_t rate) {
    viewer->FrameRate(rate);
    return rate;
  }
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

TEST_F(ViewerTest, ConnectOpensAStreamInItsOrder) {
  viewer->Username("u");
  viewer->Password("p");
  world.http.log.clear();
  Connect({Good(Picture(1, 2, 3, 2000))});
  // The first picture is fetched twice: by Connect itself and by the tick that it runs at once, which does the
  // once-a-second work as well.
  EXPECT_THAT(world.http.log, ElementsAre("SetTimeouts 20000 20000 20000 60000", "Open GET http://camera/live/1 async",
                                          "SetCredentials u p 0", "Send", "Open GET http://camera/live/1 async",
                                          "SetCredentials u p 0", "Send"));
  EXPECT_THAT(events.Take(), ElementsAre("Status(Connecting...)", "Status(Streaming...\r\nCam/1\r\n)",
                                         "StreamInfo(2000,1)", "Connected"));
  EXPECT_EQ(viewer->lStatus.Caption.Get(), "2 KB/s (16Kbps) -> 1 fps");
  EXPECT_EQ(At(300, 200), Rgb(1, 2, 3));

  // The second frame raises Connected once more, and no later one does.
  Run(2);
  EXPECT_THAT(events.Take(), ElementsAre("Connected", "StreamInfo(2000,1)", "StreamInfo(2000,1)"));
  EXPECT_EQ(world.http.sent, 4);
}

TEST_F(ViewerTest, HeadersOfTheFirstAnswerAreTold) {
  events.skip_time_codes = false;
  Answer answer = WithStatus(500);
  answer.headers = {{"VigilboxInfo", "1 welcome"}, {"PlugIns", "plate reader"}};
  Connect({answer});
  EXPECT_THAT(events.Take(), ElementsAre("Status(Connecting...)", "VigilboxInfo(1 welcome)", "Plugin(plate reader)",
                                         "Status(Connection failed.  (500))", "Disconnected", "ConnectionFailed",
                                         "ConnectionFailedV2(http://camera/live/1,False)"));

  // Nothing of a time code is validated; without the header a tick goes by the clock.
  answer = Good();
  answer.headers["VigilboxInfo"] = "0 nothing";
  answer.headers["RC_TCR"] = "20240";
  Connect({answer, Good()});
  EXPECT_THAT(events.Take(), ElementsAre("Status(Connecting...)", "VigilboxTCR(2024,0,,,,,00,20240)",
                                         "Status(Streaming...\r\nCam/1\r\n)",
                                         "VigilboxTCR(2024,01,31,12,00,00,00,20240131120000)", "Connected"));
}

TEST_F(ViewerTest, TheFetchCapHoldsOnePictureMoreThanTheFrameRate) {
  SetFrameRate(5);
  Connect({Good(Picture(1, 1, 1, 4096))});
  viewer->MasterTimer.Interval = 20;  // A timer that fires faster than it was asked to.
  events.Take();
  Run(2);
  EXPECT_THAT(events.Take(), ElementsAre("Connected", "StreamInfo(24576,6)", "StreamInfo(24576,6)"));
}

TEST_F(ViewerTest, BandwidthIsRoundedToEvenAndSmallSecondsAreNotTold) {
  const auto second_of = [&](std::size_t bytes) {
    world.http.answers = {Good(Picture(1, 1, 1, bytes))};
    Run(1);
    const std::string line = viewer->lStatus.Caption.Get();
    return line.substr(0, line.find(' '));
  };
  Connect({Good(Picture(1, 1, 1, 512))});
  EXPECT_EQ(viewer->lStatus.Caption.Get(), "Streaming...\r\nCam/1\r\n");  // 512 bytes are half a kilobyte: none.
  EXPECT_EQ(second_of(513), "1");
  EXPECT_EQ(second_of(1536), "2");
  EXPECT_EQ(second_of(2560), "2");
  events.Take();
  EXPECT_EQ(second_of(500), "2");
  EXPECT_THAT(events.Take(), IsEmpty());
}

TEST_F(ViewerTest, FailedTicksPaintCountAndRecover) {
  Connect({Good(), Good(), WithStatus(500)});
  events.Take();
  const std::string line = viewer->lStatus.Caption;
  Run(4);
  EXPECT_THAT(events.Take(), IsEmpty());
  EXPECT_EQ(At(320, 240), Rgb(1, 2, 3));  // The "no answer" picture in the middle.
  EXPECT_EQ(At(300, 240), Rgb(10, 20, 30));
  Run(1);
  EXPECT_THAT(events.Take(), ElementsAre("ConnectionBroken"));
  Run(5);
  EXPECT_THAT(events.Take(), ElementsAre("ConnectionBroken"));
  EXPECT_EQ(viewer->lStatus.Caption.Get(), line);

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
      {failing(HttpFailure::kOther), {FailureKind::kNoAnswer}},
      {WithStatus(404), {FailureKind::kStatus, 404}},
      {Good({1, 2}), {FailureKind::kNoPicture}},
      {Good({1, 2, 3, 64, 0}), {FailureKind::kDamagedPicture}},
  };
  SetFrameRate(30);  // Redraws, which count as frames, use up none of it here.
  std::vector<Failure> told;
  viewer->Events.ConnectionFailed.Listen([&] { told.push_back(viewer->LastFailure()); });
  for (const auto& [answer, failure] : cases) {
    Connect({answer});
    EXPECT_EQ(viewer->LastFailure(), failure);
    Connect({Good()});
    EXPECT_EQ(viewer->LastFailure(), Failure());
    world.http.answers = {answer};
    world.queue.Advance(milliseconds(100));
    viewer->Resize(9600, 7200);  // What was there is drawn once more, and is no newer.
    EXPECT_EQ(viewer->LastFailure(), failure);
    world.http.answers = {Good()};
    world.queue.Advance(milliseconds(100));
    EXPECT_EQ(viewer->LastFailure(), Failure());
  }
  EXPECT_THAT(told, ElementsAre(cases[0].second, cases[1].second, cases[2].second, cases[3].second, cases[4].second));

  viewer->Connect("http://");
  EXPECT_EQ(viewer->LastFailure(), (Failure{FailureKind::kUnreachable}));
  viewer->MultiCamView("http://tile/\r\n");
  EXPECT_EQ(viewer->LastFailure(), Failure());
  world.http.answers = {WithStatus(404), Good()};
  world.queue.Advance(milliseconds(500));
  EXPECT_EQ(viewer->LastFailure(), (Failure{FailureKind::kStatus, 404}));
  world.queue.Advance(milliseconds(500));
  EXPECT_EQ(viewer->LastFailure(), Failure());
}

TEST_F(ViewerTest, StopGettingFramesShowsOneMoreFrame) {
  Connect({Good()});
  viewer->StopGettingFrames();
  Run(5);
  EXPECT_EQ(world.http.sent, 3);
  EXPECT_EQ(viewer->URL(), kUrl);
  // The stop stays: each resumption gives one more tick.
  viewer->ToogleClock(true);
  Run(5);
  EXPECT_EQ(world.http.sent, 4);
  viewer->Pulse();
  EXPECT_EQ(world.http.sent, 5);
}

TEST_F(ViewerTest, RequestEndTreatsTheLastAnswerAsAFrame) {
  events.skip_time_codes = false;
  Connect({Good(), Good(), WithStatus(500)});
  events.Take();
  viewer->RequestEnd();
  EXPECT_THAT(events.Take(), ElementsAre(testing::StartsWith("VigilboxTCR"), "Connected"));

  events.skip_time_codes = true;
  Run(1);
  for (int i = 0; i < 8; ++i) viewer->RequestEnd();  // Alone it never gets to the fifth failure.
  EXPECT_THAT(events.Take(), IsEmpty());
  Run(5);                // The first tick finds this second's frames used up; four fail.
  viewer->RequestEnd();  // This failure is the fifth.
  EXPECT_THAT(events.Take(), ElementsAre("ConnectionBroken", testing::StartsWith("Status("), "Disconnected"));
}

TEST_F(ViewerTest, OnlyAPlainYesShowsTheRecordingIcon) {
  for (const auto& [recording, shown] : {std::pair("Yes", Rgb(1, 2, 3)), std::pair("yes", Rgb(255, 255, 192))}) {
    Answer answer = Good();
    answer.headers["Recording"] = recording;
    Connect({answer});
    Run(1);
    EXPECT_EQ(viewer->StatusDisplay.Image().Point(25, 8), shown) << recording;
  }
}

TEST_F(ViewerTest, TheHostsAnswerToADropGoesBack) {
  viewer->Events.OLEDragDrop.Listen([](DropData& data, std::int32_t& effect, std::int16_t&, std::int16_t&, float&,
                                       float&) { effect = data.Get("text/plain") == "hello" ? 2 : 0; });
  Drop drop{.data = {{{"text/plain", "hello"}}}};
  viewer->Mira.OnDrop(drop);
  EXPECT_EQ(drop.effect, 2);
}

TEST_F(ViewerTest, LayoutFollowsTheSize) {
  EXPECT_EQ(viewer->lStatus.Top, 0);
  EXPECT_EQ(viewer->lStatus.Width, 9600 - 870);
  viewer->Resize(1000, 300);
  EXPECT_LT(viewer->WarningFrame.Left, 0);
  EXPECT_EQ(viewer->WarningFrame.Top, (300 - 495) / 2.0F);

  // Before the first frame a resize counts none; after it the frame is drawn again and counted, so that two of them use
  // up what a FrameRate of 1 lets through in this second.
  Connect({Good(Picture(9, 9, 9, 2048))});
  events.Take();
  viewer->Resize(4800, 3600);
  viewer->Resize(9600, 7200);
  EXPECT_EQ(At(639, 479), Rgb(9, 9, 9));
  Run(1);
  EXPECT_THAT(events.Take(), ElementsAre("StreamInfo(4096,2)"));
}

TEST_F(ViewerTest, PicturesAreThereBeforeAnythingIsDrawnAndFollowTheirSizeAtOnce) {
  EXPECT_EQ(viewer->MotionPicture[0].Image().Point(88, 81), Rgb(0, 0, 0));
  EXPECT_EQ(viewer->MotionPicture[2].Image().Point(88, 81), Rgb(64, 64, 64));
  // Nothing draws a mosaic anew at another size, before its next tile.
  viewer->MultiCamView("http://tile/\r\n");
  world.queue.Advance(milliseconds(500));
  viewer->Resize(4800, 9000);
  EXPECT_EQ(std::get<const Surface*>(viewer->PictureToSave())->Point(319, 599), Rgb(0, 0, 0));
}

TEST(ViewerScaleTest, PixelsAreTheScreensInEachDirection) {
  FakePlatform world;
  world.screen.twips_x = 12;
  world.screen.twips_y = 20;
  const auto viewer = VideoServerPush::Create(world.platform);
  viewer->Resize(640 * 12, 480 * 20);
  for (const PictureBox& picture : viewer->MotionPicture) {
    EXPECT_EQ(picture.Width, 89 * 12);
    EXPECT_EQ(picture.Height, 82 * 20);
    EXPECT_EQ(picture.Left, -5 * 12);
    EXPECT_EQ(picture.Top, -5 * 20);
  }
  EXPECT_EQ(viewer->StatusDisplay.Image().Height(), 26);
  EXPECT_EQ(viewer->StatusDisplay.Top, (480 - 26) * 20);

  const auto& area = viewer->VideoStream;
  world.http.answers = {Good(Picture(5, 5, 5)), Good(Picture(5, 5, 5)), WithStatus(500)};
  viewer->Connect(kUrl);
  EXPECT_EQ(area.Image().Width(), 640);
  EXPECT_EQ(area.Image().Point(639, 479), Rgb(5, 5, 5));
  EXPECT_EQ(viewer->BuffPic.Width, 640 * 12);
  EXPECT_EQ(viewer->BuffPic.Height, 480 * 20);
  EXPECT_EQ(viewer->GetPicture()->Point(639, 479), Rgb(5, 5, 5));
  world.queue.Advance(milliseconds(1000));  // The picture of a failed request, 16 × 16 here, in the middle.
  EXPECT_EQ(area.Image().Point(312, 232), Rgb(1, 2, 3));
  EXPECT_EQ(area.Image().Point(311, 232), Rgb(5, 5, 5));
  EXPECT_EQ(area.Image().Point(328, 248), Rgb(5, 5, 5));

  world.http.answers = {Good(Picture(7, 7, 7))};
  viewer->MultiCamView("http://a/\r\nhttp://b/\r\nhttp://c/\r\nhttp://d/\r\n");
  world.queue.Advance(milliseconds(2000));
  EXPECT_EQ(world.http.Opened().back(), "http://d/?live-special0320x0200050");
  EXPECT_EQ(area.Image().Point(639, 479), Rgb(7, 7, 7));
  EXPECT_EQ(std::get<const Surface*>(viewer->PictureToSave())->Height(), 480);
}

TEST_F(ViewerTest, ATickTellsItsTimeThenItsMotionThenItsSecond) {
  viewer->MotionDetector(true);
  viewer->MotionByZones(true);
  std::int32_t sensitivity = 50;
  viewer->MotionSensivity(sensitivity);
  viewer->ShowMotion(true);
  EXPECT_TRUE(viewer->MotionPicture[2].Visible);
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

TEST_F(ViewerTest, APictureThatCannotBeReadLeavesTheLastOneAndIsCounted) {
  Connect({Good(Picture(7, 7, 7)), Good(Picture(7, 7, 7)), Good({1, 2})});
  events.Take();
  Run(1);
  EXPECT_EQ(At(10, 10), Rgb(7, 7, 7));
  EXPECT_THAT(events.Take(), ElementsAre("Connected"));
}

TEST_F(ViewerTest, ListenersThatThrowDoNotStopTheStream) {
  viewer->Events.Connected.Listen([] { throw std::runtime_error("host's fault"); });
  Connect({Good()});
  Run(2);
  EXPECT_EQ(world.http.sent, 4);
}
}  // namespace
}  // namespace orbelcast
