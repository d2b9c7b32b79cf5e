// A player on a real camera, a real loop and a real clip, from the first request to the file that is read back.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <mutex>
#include <opencv2/imgcodecs.hpp>

#include "assembly/headless_platform.h"
#include "clips/clip_reader.h"
#include "fakes/fake_dialogs.h"
#include "fakes/run_loop.h"
#include "fakes/scripted_server.h"
#include "player/user_control1.h"

namespace orbelcast {
namespace {

using std::chrono::milliseconds;

constexpr int kWidth = 322;  // Rows of a bitmap of this width are filled up.
constexpr int kHeight = 240;
constexpr std::size_t kSaveAvi = 9;
constexpr std::size_t kStopAvi = 8;

/// A camera whose pictures differ; it remembers what it has sent.
class Camera {
 public:
  std::string Url() const { return server_.Url("/live"); }
  std::vector<std::vector<std::uint8_t>> Sent() {
    const std::lock_guard lock(mutex_);
    return sent_;
  }

 private:
  std::vector<std::uint8_t> Next() {
    const std::lock_guard lock(mutex_);
    const int number = static_cast<int>(sent_.size());
    cv::Mat picture(kHeight, kWidth, CV_8UC3, cv::Scalar(40, 90, number * 7 % 256));
    picture(cv::Rect(number * 5 % (kWidth - 40), 60, 40, 80)).setTo(cv::Scalar(220, number * 11 % 256, 30));
    std::vector<std::uint8_t> jpeg;
    cv::imencode(".jpg", picture, jpeg);
    sent_.push_back(jpeg);
    return jpeg;
  }

  std::mutex mutex_;
  std::vector<std::vector<std::uint8_t>> sent_;
  // Last, so that its threads end first.
  fakes::ScriptedServer server_{[this](const std::string&, fakes::ScriptedServer::Connection& to) {
    const auto jpeg = Next();
    to.Send(fakes::AnswerBytes(200, {reinterpret_cast<const char*>(jpeg.data()), jpeg.size()}));
  }};
};

class PlayerClipTest : public testing::Test {
 protected:
  PlayerClipTest() { std::filesystem::create_directories(folder_); }
  ~PlayerClipTest() override {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }

  std::filesystem::path Clip() const { return folder_ / "clip.avi"; }

  /// A player that shows the camera, at `rate` pictures a second.
  std::shared_ptr<UserControl1> Player(int rate) {
    auto player = UserControl1::Create(platform_);
    player->FrameRate.ListIndex(rate);
    player->ReadProperties({{"LURL", camera_.Url()}, {"Start", "Yes"}});
    return player;
  }
  void Click(UserControl1& player, std::size_t tool) { player.Player[tool].OnClick(); }
  bool Run(
      milliseconds time, const std::function<bool()>& done = [] { return false; }) {
    return fakes::RunLoop(platform_.loop.Queue(), time, done);
  }

  Camera camera_;
  HeadlessPlatform host_;
  fakes::FakeDialogs dialogs_{host_.Get().loop};
  Registry registry_;  // nobody's settings
  Platform platform_ = host_.Get().With(registry_).With(dialogs_);

 private:
  const std::filesystem::path folder_ =
      std::filesystem::temp_directory_path() / ("orbelcast-player-clip-" + std::to_string(::getpid()));
};

TEST_F(PlayerClipTest, IsReadBackPictureByPicture) {
  const auto player = Player(10);
  ASSERT_TRUE(player->VS->VideoStream.Visible);
  dialogs_.names = {Clip().string()};
  dialogs_.compressions = {Dialogs::Compression{.codec = "Uncompressed"}};
  int told = 0;
  player->VS->Events.StreamInfo.Listen([&](std::int32_t&, std::int32_t&) { ++told; });
  Click(*player, kSaveAvi);
  Run(milliseconds(1000), [&] { return player->Player[kStopAvi].Visible.Get(); });
  ASSERT_TRUE(player->Player[kStopAvi].Visible);
  EXPECT_FALSE(player->Player[kSaveAvi].Visible);
  told = 0;
  Run(milliseconds(6000), [&] { return told == 3; });
  dialogs_.log.clear();
  Click(*player, kStopAvi);
  Run(milliseconds(1000), [&] { return player->Player[kSaveAvi].Visible.Get(); });
  EXPECT_THAT(dialogs_.log, testing::ElementsAre("tell Done\r\nTotal frames: 4 | AVI Maker"));

  auto said = tests::Probe(Clip());
  EXPECT_EQ(said["complaints"], "");
  EXPECT_EQ(said["r_frame_rate"], "11/1");
  EXPECT_EQ(said["nb_frames"], "4");
  const auto pictures = tests::ReadPictures(Clip());
  ASSERT_EQ(pictures.size(), 3u);

  // Each is exactly the bitmap of one of the JPEGs that were sent, and they come in their order.
  const auto sent = camera_.Sent();
  auto from = sent.begin();
  for (const cv::Mat& picture : pictures) {
    from = std::find_if(from, sent.end(), [&](const std::vector<std::uint8_t>& jpeg) {
      Surface drawn(kWidth, kHeight);
      host_.Get().jpeg_decoder.DrawJpeg(drawn, FrameBytes(jpeg), 0, 0);
      cv::Mat expected;
      const cv::Mat four(kHeight, kWidth, CV_8UC4, drawn.MutablePixels().data());
      std::vector<cv::Mat> planes(4);
      cv::split(four, planes.data());
      planes.resize(3);
      cv::merge(planes, expected);
      return cv::norm(expected, picture, cv::NORM_INF) == 0;
    });
    ASSERT_NE(from, sent.end());
    EXPECT_GT(cv::PSNR(cv::imdecode(*from, cv::IMREAD_COLOR), picture), 35);  // as another decoder has it
    ++from;
  }
}

// A host that goes away in the middle of a clip leaves a clip.
TEST_F(PlayerClipTest, IsWholeWhenTheHostReleasesThePlayer) {
  auto player = Player(10);
  dialogs_.names = {Clip().string()};
  dialogs_.compressions = {Dialogs::Compression{.codec = "HuffYUV"}};
  int told = 0;
  Click(*player, kSaveAvi);
  Run(milliseconds(1000), [&] { return player->Player[kStopAvi].Visible.Get(); });
  player->VS->Events.StreamInfo.Listen([&](std::int32_t&, std::int32_t&) { ++told; });
  Run(milliseconds(3000), [&] { return told > 0; });
  player.reset();
  auto said = tests::Probe(Clip());
  EXPECT_EQ(said["complaints"], "");
  EXPECT_EQ(said["nb_frames"], "2");
  EXPECT_EQ(said["nb_read_frames"], "1");
}

}  // namespace
}  // namespace orbelcast
