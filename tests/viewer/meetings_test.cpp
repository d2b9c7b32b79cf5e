// Handlers of one viewer meet: a host does something in the middle of whatever the viewer is doing. One scene has every
// kind of step; each meeting plays it up to one of its yields, waits or events, acts there, and looks at what holds
// afterwards.

#include <gmock/gmock.h>

#include <algorithm>
#include <map>
#include <set>

#include "fakes/event_log.h"
#include "fakes/fake_platform.h"
#include "fakes/rude_loop.h"
#include "viewer/video_server_push.h"

namespace orbelcast {
namespace {

using fakes::Answer;
using std::chrono::milliseconds;
using testing::AnyOf;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

constexpr auto kCamera = "http://camera/";
constexpr auto kOther = "http://other/";
constexpr auto kTiles = "http://tile/1\r\nhttp://tile/2\r\n";
constexpr std::size_t kRate = 4;
constexpr Color kOtherColor = Rgb(200, 7, 7);
constexpr Color kTileColor = Rgb(50, 60, 70);

/// Counts how often each received picture was drawn into the video area, and notes which steps are a motion scan's.
class CountingDecoder final : public ForwardingJpegDecoder {
 public:
  CountingDecoder(JpegDecoder& decoder, const fakes::RudeLoop& loop) : ForwardingJpegDecoder(decoder), loop_(loop) {}

  std::optional<Size> DrawOnAll(const FrameBytes& jpeg, std::span<const JpegTarget> targets, Size serves) override {
    if (targets.size() > 1) scans.insert(loop_.steps);
    if (!jpeg.Empty()) {
      ++drawings;
      most_often = std::max(most_often, ++drawn_[jpeg.Serial()]);
    }
    return ForwardingJpegDecoder::DrawOnAll(jpeg, targets, serves);
  }
  std::optional<Size> DrawWhenSeen(const FrameBytes& jpeg, std::span<const JpegTarget> targets) override {
    return DrawOnAll(jpeg, targets, {});
  }

  std::set<int> scans;
  int drawings = 0;
  int most_often = 0;

 private:
  const fakes::RudeLoop& loop_;
  std::map<std::uint64_t, int> drawn_;
};

/// The traces of a meeting.
struct Afterwards {
  std::vector<std::string> events;  ///< Since the act.
  std::vector<std::string> opened;  ///< Addresses since the act.
  std::vector<std::string> later;   ///< Those of the last second.
  bool connecting = false;          ///< The act met a Connect on its way.
};

struct Act {
  std::string name;
  std::function<void(std::shared_ptr<VideoServerPush>&)> act;
  std::function<void(VideoServerPush&, const Afterwards&)> holds;
  bool shows_again = false;  ///< It draws the picture that is there once more.
};

class Scene {
 public:
  enum class Where { kStep, kEvent };

  /// Plays the scene and acts at its `at`th step or event (−1: nowhere), on a handler of its own or where it stands.
  void Play(int at, Where where, const Act& act, bool own_handler) {
    events_.on_event = [&](const std::string&) {
      if (told_++ == at && where == Where::kEvent) Meet(act, own_handler);
    };
    loop_.act = [&] { Meet(act, own_handler); };
    loop_.rude_at = where == Where::kStep ? at : -1;

    Connect(kCamera, false, "Wait...");
    Pass(milliseconds(400));
    Do([](VideoServerPush& viewer) { viewer.Disconnect(); });
    Pass(milliseconds(10));
    Do([](VideoServerPush& viewer) { viewer.MotionDetector(false); });
    Connect(kCamera, false, {});
    Pass(milliseconds(900));
    failing_ = true;
    Pass(milliseconds(1400));
    Do([](VideoServerPush& viewer) { viewer.RequestEnd(); });
    failing_ = false;
    Pass(milliseconds(300));
    Connect("http://missing/", true, {});
    Pass(milliseconds(100));
    Do([](VideoServerPush& viewer) { viewer.MultiCamView(kTiles); });
    Pass(milliseconds(2600));
    if (at >= 0) LookAfterwards(act);
  }

  int Told() const { return told_; }
  /// Every step but those in the midst of a motion scan, which are alike: of them every 97th.
  std::vector<int> Moments() const {
    constexpr int kSamples = 552;
    constexpr int kStride = 97;
    std::vector<int> moments;
    for (int step = 0; step < loop_.steps; ++step) {
      const auto after = decoder_.scans.upper_bound(step);
      const bool scanning = after != decoder_.scans.begin() && step - *std::prev(after) < kSamples;
      if (!scanning || step % kStride == 0) moments.push_back(step);
    }
    return moments;
  }

  Scene() {
    viewer_->Resize(9600, 7200);
    events_.skip_time_codes = false;
    std::int16_t rate = kRate;
    viewer_->FrameRate(rate);
    viewer_->MotionDetector(true);
    viewer_->MotionByZones(true);
    std::int32_t sensitivity = 100;
    viewer_->MotionSensivity(sensitivity);
    loop_.steps = 0;
    http_.route = [this](const std::string& url) { return AnswerTo(url); };
  }

 private:
  std::optional<Answer> AnswerTo(const std::string& url) {
    Answer answer{.headers = {{"VigilboxInfo", "1"}, {"PlugIns", "p"}, {"RC_TCR", "20240131235959"}}, .body = {}};
    answer.delay = milliseconds(30);
    if (url == kCamera) {
      if (failing_) return Answer{.status = 500, .headers = {}, .body = {}, .delay = milliseconds(30)};
      answer.body = {10, 20, 30, 64, 48};
    } else if (url == kOther) {
      answer.delay = asked_other_++ == 0 ? milliseconds(600) : milliseconds(5);
      answer.body = {200, 7, 7, 64, 48};
    } else if (url.starts_with("http://tile/")) {
      answer.delay = {};
      answer.body = {50, 60, 70, 64, 48};
    } else {
      answer.status = 404;
    }
    answer.body.resize(2048);
    return answer;
  }

  void Connect(const std::string& url, bool once, const std::string& message) {
    Do([=, this](VideoServerPush& viewer) {
      connecting_ = true;
      viewer.Connect(url, once, message);
      if (!met_) connecting_ = false;
    });
    Pass(milliseconds(100));
  }
  void Do(const std::function<void(VideoServerPush&)>& step) {
    if (met_) return;
    world_.loop.RunHandler([this, step] { step(*viewer_); });
  }
  void Pass(milliseconds time) {
    if (!met_) world_.queue.Advance(time);
  }

  void Meet(const Act& act, bool own_handler) {
    met_ = true;
    events_.Take();
    opened_before_ = http_.Opened().size();
    const int drawings = decoder_.drawings;
    const bool awaited = loop_.waiting;
    const auto meet = [&] { act.act(viewer_); };
    own_handler ? world_.loop.RunHandler(meet) : meet();
    // An answer that somebody waits for is nobody else's.
    if (awaited && act.name == "RequestEnd") {
      EXPECT_EQ(decoder_.drawings, drawings);
    }
  }

  void LookAfterwards(const Act& act) {
    ASSERT_TRUE(met_);
    world_.queue.Advance(milliseconds(1500));
    const std::size_t opened_by_then = http_.Opened().size();
    world_.queue.Advance(milliseconds(1000));
    Afterwards afterwards{.events = events_.lines, .opened = http_.Opened(), .later = {}, .connecting = connecting_};
    std::erase_if(afterwards.events, [](const std::string& event) { return event.starts_with("VigilboxTCR"); });
    afterwards.later.assign(afterwards.opened.begin() + static_cast<std::ptrdiff_t>(opened_by_then),
                            afterwards.opened.end());
    afterwards.opened.erase(afterwards.opened.begin(),
                            afterwards.opened.begin() + static_cast<std::ptrdiff_t>(opened_before_));

    EXPECT_LE(http_.most_under_way, 1);
    EXPECT_LE(decoder_.most_often, act.shows_again ? 2 : 1);
    if (viewer_) {
      EXPECT_FALSE(viewer_->WarningFrame.Visible);
      act.holds(*viewer_, afterwards);
    } else {
      EXPECT_THAT(afterwards.events, IsEmpty());
      EXPECT_THAT(afterwards.opened, IsEmpty());
    }
    viewer_.reset();
    world_.queue.Advance(milliseconds(10));
    EXPECT_EQ(world_.loop.Handlers(), 0u);
    EXPECT_EQ(http_.under_way, 0);
  }

  fakes::FakePlatform world_;
  fakes::RudeLoop loop_{world_.loop};
  fakes::FakeHttp http_{loop_};
  CountingDecoder decoder_{world_.jpeg_decoder, loop_};
  Platform platform_ = world_.platform.With(loop_).With(http_).With(decoder_);
  std::shared_ptr<VideoServerPush> viewer_ = VideoServerPush::Create(platform_);
  fakes::EventLog events_{*viewer_};
  bool failing_ = false;
  int asked_other_ = 0;
  int told_ = 0;
  bool met_ = false;
  bool connecting_ = false;
  std::size_t opened_before_ = 0;
};

auto CountOf(const std::vector<std::string>& events, const std::string& event) {
  return std::ranges::count_if(events, [&](const std::string& line) { return line.starts_with(event); });
}

std::vector<std::string> StreamsOf(std::vector<std::string> urls) {
  std::erase_if(urls, [](const std::string& url) { return url.starts_with("http://tile/"); });
  return urls;
}

/// Nothing is fetched for a stream any more, but where the act came before what a Connect sets at its end.
void FetchesNoStream(VideoServerPush&, const Afterwards& afterwards) {
  if (!afterwards.connecting) {
    EXPECT_THAT(StreamsOf(afterwards.later), IsEmpty());
  }
}

// A table, and so it is long.
const std::vector<Act>& Acts() {
  static const std::vector<Act> acts{
      {"Connect", [](auto& viewer) { viewer->Connect(kOther); },
       [](VideoServerPush& viewer, const Afterwards& afterwards) {
         EXPECT_EQ(viewer.URL(), kOther);
         EXPECT_THAT(afterwards.opened, Each(kOther));
         EXPECT_THAT(afterwards.later, SizeIs(AnyOf(kRate, kRate + 1)));
         EXPECT_EQ(CountOf(afterwards.events, "Connected"), 2);
         EXPECT_THAT(afterwards.events,
                     Not(testing::Contains(AnyOf("Disconnected", "ConnectionFailed", "ConnectionBroken"))));
         EXPECT_EQ(CountOf(afterwards.events, "VigilboxInfo"), 1);
         EXPECT_TRUE(viewer.MasterTimer.Enabled && viewer.VideoStream.Visible);
         EXPECT_FALSE(viewer.MultiCam.Enabled || viewer.StatusDisplay.Visible);
         EXPECT_EQ(viewer.VideoStream.Image().Point(630, 470), kOtherColor);
       }},
      {"Connect once", [](auto& viewer) { viewer->Connect(kOther, true, "Wait..."); },
       [](VideoServerPush& viewer, const Afterwards& afterwards) {
         EXPECT_EQ(viewer.URL(), kOther);
         EXPECT_THAT(afterwards.opened, ElementsAre(kOther));
         EXPECT_EQ(CountOf(afterwards.events, "Connected"), 1);
         EXPECT_THAT(afterwards.events, Not(testing::Contains(AnyOf("Disconnected", "ConnectionFailed"))));
         EXPECT_FALSE(viewer.MasterTimer.Enabled || viewer.MultiCam.Enabled);
         EXPECT_EQ(viewer.VideoStream.Image().Point(630, 470), kOtherColor);
       }},
      {"Connect to nothing", [](auto& viewer) { viewer->Connect("http://"); },
       [](VideoServerPush& viewer, const Afterwards& afterwards) {
         EXPECT_EQ(viewer.lStatus.Caption.Get(), "Connection failed.  (0)");
         EXPECT_THAT(afterwards.events,
                     ElementsAre("Status(Connecting...)", "Status(Connection failed.  (0))", "Disconnected",
                                 "ConnectionFailed", "ConnectionFailedV2(http://,False)"));
         EXPECT_THAT(afterwards.opened, IsEmpty());
       }},
      {"Disconnect", [](auto& viewer) { viewer->Disconnect(); },
       [](VideoServerPush& viewer, const Afterwards& afterwards) {
         EXPECT_THAT(StreamsOf(afterwards.later), IsEmpty());
         EXPECT_GE(CountOf(afterwards.events, "Disconnected"), 1);
         EXPECT_TRUE(viewer.MultiCam.Enabled || !viewer.VideoStream.Visible);
       }},
      {"StopGettingFrames", [](auto& viewer) { viewer->StopGettingFrames(); }, FetchesNoStream},
      {"Pulse", [](auto& viewer) { viewer->Pulse(); }, FetchesNoStream},
      {"RequestEnd", [](auto& viewer) { viewer->RequestEnd(); },
       [](VideoServerPush& viewer, const Afterwards& afterwards) {
         EXPECT_THAT(afterwards.later, SizeIs(viewer.MultiCam.Enabled ? 2u : viewer.MasterTimer.Enabled ? kRate : 0u));
       },
       true},
      {"hide", [](auto& viewer) { viewer->UserControl_Hide(); }, FetchesNoStream},
      {"MultiCamView", [](auto& viewer) { viewer->MultiCamView("http://tile/3\r\nhttp://tile/4\r\n"); },
       [](VideoServerPush& viewer, const Afterwards& afterwards) {
         EXPECT_THAT(afterwards.later, SizeIs(2));
         EXPECT_THAT(afterwards.later, Each(AnyOf(StartsWith("http://tile/3"), StartsWith("http://tile/4"))));
         EXPECT_THAT(afterwards.events, Each(StartsWith("StreamInfo(0,1)")));
         EXPECT_TRUE(viewer.MultiCam.Enabled);
         EXPECT_FALSE(viewer.MasterTimer.Enabled || viewer.StatusDisplay.Visible);
         EXPECT_EQ(viewer.VideoStream.Image().Point(100, 100), kTileColor);
         EXPECT_EQ(viewer.VideoStream.Image().Point(400, 100), kTileColor);
       },
       true},
      {"release", [](auto& viewer) { viewer.reset(); }, [](VideoServerPush&, const Afterwards&) {}},
  };
  return acts;
}

class MeetingsTest : public testing::TestWithParam<std::size_t> {};

TEST_P(MeetingsTest, WhateverItMeets) {
  const Act& act = Acts()[GetParam()];
  Scene rehearsal;
  rehearsal.Play(-1, Scene::Where::kStep, act, false);
  ASSERT_GT(rehearsal.Told(), 40);
  ASSERT_GT(rehearsal.Moments().size(), 80u);
  for (const int at : rehearsal.Moments()) {
    SCOPED_TRACE("at step " + std::to_string(at));
    Scene().Play(at, Scene::Where::kStep, act, at % 2 == 0);
  }
  for (int at = 0; at < rehearsal.Told(); ++at) {
    SCOPED_TRACE("at event " + std::to_string(at));
    for (const bool own_handler : {false, true}) Scene().Play(at, Scene::Where::kEvent, act, own_handler);
  }
}

INSTANTIATE_TEST_SUITE_P(Acts, MeetingsTest, testing::Range<std::size_t>(0, 10), [](const auto& which) {
  std::string name = Acts()[which.param].name;
  std::erase(name, ' ');
  return name;
});

}  // namespace
}  // namespace orbelcast
