// Clips written by the adapter, read back by what people have: ffprobe and ffmpeg.

#include "adapters/ffmpeg/ffmpeg_avi_files.h"

#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <map>
#include <sstream>

#include "fakes/temporary_folder.h"

namespace orbelcast {
namespace {

/// The output of a command.
std::string OutputOf(const std::string& command) {
  std::FILE* const pipe = ::popen(command.c_str(), "r");
  std::string output;
  std::array<char, 4096> part{};
  while (const std::size_t count = std::fread(part.data(), 1, part.size(), pipe)) output.append(part.data(), count);
  ::pclose(pipe);
  return output;
}

/// A row of pixels after the other from the top, blue first, without what fills a row.
using Rows = std::string;

/// A picture with soft slopes, an edge that moves with `time`, and a size that makes rows need filling.
struct Picture {
  int width;
  int height;
  std::vector<std::uint8_t> pixels;

  Picture(int picture_width, int picture_height, int time)
      : width(picture_width), height(picture_height), pixels(RowBytes() * static_cast<std::size_t>(height)) {
    for (int y = 0; y < height; ++y) {
      for (int x = 0; x < width; ++x) {
        std::uint8_t* pixel = At(x, y);
        pixel[0] = static_cast<std::uint8_t>(255 * x / width);
        pixel[1] = static_cast<std::uint8_t>(255 * y / height);
        pixel[2] = x < width * (time % 10) / 10 ? 200 : 40;
      }
    }
  }
  std::size_t RowBytes() const { return static_cast<std::size_t>(width * 3 + 3) / 4 * 4; }
  /// The pixel at a place counted from the top-left corner.
  std::uint8_t* At(int x, int y) {
    return pixels.data() + static_cast<std::size_t>(height - 1 - y) * RowBytes() + static_cast<std::size_t>(x) * 3;
  }
  AviSample Sample() const { return {width, height, pixels}; }
  Rows AsRows() {
    Rows rows;
    for (int y = 0; y < height; ++y)
      rows.append(reinterpret_cast<char*>(At(0, y)), static_cast<std::size_t>(width) * 3);
    return rows;
  }
};

std::vector<std::uint8_t> InfoHeader(std::int32_t width, std::int32_t height, std::uint8_t bits = 24) {
  std::vector<std::uint8_t> header(40);
  header[0] = 40;
  std::memcpy(header.data() + 4, &width, 4);
  std::memcpy(header.data() + 8, &height, 4);
  header[12] = 1;
  header[14] = bits;
  return header;
}

double Psnr(const Rows& one, const Rows& other) {
  if (one.size() != other.size()) return 0;
  double error = 0;
  for (std::size_t i = 0; i < one.size(); ++i) {
    error += std::pow(static_cast<std::uint8_t>(one[i]) - static_cast<std::uint8_t>(other[i]), 2);
  }
  return 10 * std::log10(255.0 * 255.0 * static_cast<double>(one.size()) / error);  // infinite for the same
}

class AviFilesTest : public testing::Test {
 protected:
  std::filesystem::path Path(const std::string& name = "clip.avi") const { return folder_.Path() / name; }

  /// A clip that is ready for its first sample.
  std::unique_ptr<AviFile> Begin(const Dialogs::Compression& choice, int width, int height, int rate = 5) {
    auto file = files_.Create(Path().string());
    EXPECT_TRUE(file);
    EXPECT_TRUE(file->CreateStream({.scale = 1, .rate = rate, .width = width, .height = height}));
    EXPECT_TRUE(file->MakeCompressedStream(choice));
    EXPECT_TRUE(file->SetFormat(InfoHeader(width, height)));
    return file;
  }

  /// ffprobe's answer on the video stream: "width", "nb_frames" (as the header declares), "nb_read_frames" (as they
  /// could be decoded; empty ones do not count) and so on. Of the frames "pts": the time of each decoded one, in the
  /// stream's own frames. Anything it complains of is under "complaints".
  std::map<std::string, std::string> Probe() const {
    std::istringstream lines(
        OutputOf("ffprobe -v warning -count_frames -select_streams v:0 -show_entries stream:frame=pts "
                 "-of default=noprint_wrappers=1 '" +
                 Path().string() + "' 2>&1"));
    std::map<std::string, std::string> entries;
    for (std::string line; std::getline(lines, line);) {
      // Its decoder says so of some very small pictures that do end with the marker.
      if (line.ends_with("EOI missing, emulating")) continue;
      const auto equals = line.find('=');
      const bool complains = equals == std::string::npos || line.starts_with('[');
      entries[complains ? "complaints" : line.substr(0, equals)] += complains ? line : line.substr(equals + 1) + " ";
    }
    return entries;
  }

  /// Expects `declared` frames in the clip's header, `pictures` of which can be read; the others are empty.
  void ExpectFrames(int declared, int pictures) const {
    auto said = Probe();
    EXPECT_EQ(said["complaints"], "");
    EXPECT_EQ(said["nb_frames"], std::to_string(declared) + " ");
    EXPECT_EQ(said["nb_read_frames"], std::to_string(pictures) + " ");
  }

  /// Every picture of a clip of that size.
  std::vector<Rows> Pictures(int width, int height) const {
    const Rows all = OutputOf("ffmpeg -v error -nostdin -i '" + Path().string() +
                              "' -fps_mode passthrough -f rawvideo -pix_fmt bgr24 -");
    std::vector<Rows> pictures;
    const auto size = static_cast<std::size_t>(width * height) * 3;
    for (std::size_t at = 0; at < all.size(); at += size) pictures.push_back(all.substr(at, size));
    return pictures;
  }

  FfmpegAviFiles files_;

 private:
  const fakes::TemporaryFolder folder_;
};

struct Compression {
  const char* name;
  const char* codec;
  double psnr;  ///< At least; infinite where nothing may be lost.
};

class EveryCompression : public AviFilesTest, public testing::WithParamInterface<Compression> {};

INSTANTIATE_TEST_SUITE_P(, EveryCompression,
                         testing::Values(Compression{"Uncompressed", "rawvideo", INFINITY},
                                         Compression{"Motion JPEG", "mjpeg", 33}, Compression{"MPEG-4", "mpeg4", 33},
                                         Compression{"HuffYUV", "huffyuv", INFINITY}),
                         [](const auto& each) { return std::string(each.param.codec); });

TEST_P(EveryCompression, ComesBackPictureByPictureAtItsPosition) {
  ASSERT_THAT(files_.Codecs(), testing::Contains(GetParam().name));
  const auto file = Begin({.codec = GetParam().name}, 99, 65, 7);
  const std::vector<int> positions{1, 2, 3, 5, 9, 10};
  for (int position : positions) EXPECT_TRUE(file->Write(position, Picture(99, 65, position).Sample()));
  file->Release();

  ExpectFrames(11, 6);
  auto said = Probe();
  EXPECT_EQ(said["codec_name"] + said["pts"], GetParam().codec + std::string(" 1 2 3 5 9 10 "));
  EXPECT_EQ(said["avg_frame_rate"], "7/1 ");
  const auto pictures = Pictures(99, 65);
  ASSERT_EQ(pictures.size(), positions.size());
  for (std::size_t i = 0; i < positions.size(); ++i) {
    EXPECT_GE(Psnr(pictures[i], Picture(99, 65, positions[i]).AsRows()), GetParam().psnr) << positions[i];
  }
}

TEST_P(EveryCompression, FitsPicturesOfAnotherSizeAndRefusesHalfOnes) {
  const auto file = Begin({.codec = GetParam().name}, 80, 40);
  EXPECT_TRUE(file->Write(0, Picture(80, 40, 1).Sample()));
  Picture tall(50, 100, 9);
  EXPECT_TRUE(file->Write(1, tall.Sample()));
  EXPECT_TRUE(file->Write(2, Picture(1, 3, 1).Sample()));
  EXPECT_TRUE(file->Write(3, Picture(401, 7, 1).Sample()));
  const auto half = std::span(tall.pixels).first(tall.pixels.size() - 1);
  EXPECT_FALSE(file->Write(4, {tall.width, tall.height, half}));
  EXPECT_FALSE(file->Write(4, {-1, 1, half}));
  EXPECT_FALSE(file->Write(4, {}));
  EXPECT_FALSE(file->Write(3, Picture(80, 40, 1).Sample()));  // not after the last one
  EXPECT_TRUE(file->Write(4, Picture(80, 40, 2).Sample()));
  file->Release();
  EXPECT_FALSE(file->Write(5, Picture(80, 40, 2).Sample()));

  const auto pictures = Pictures(80, 40);
  ASSERT_EQ(pictures.size(), 5);
  // 20 × 40 pixels of picture in the middle, black beside them.
  const auto green = [&](std::size_t x) { return static_cast<std::uint8_t>(pictures[1][(20 * 80 + x) * 3 + 1]); };
  EXPECT_GT(green(40), 100);
  EXPECT_LT(green(27) + green(53), 16);
  EXPECT_GT(Psnr(pictures[4], Picture(80, 40, 2).AsRows()), 30);
}

// A process that is killed has written no index; what it wrote is all there.
TEST_P(EveryCompression, KeepsEveryFrameOfAKilledProcess) {
  const pid_t child = ::fork();
  if (child == 0) {
    const auto file = Begin({.codec = GetParam().name}, 64, 48);
    for (int position = 1; position <= 20; ++position) {
      if (!file->Write(position, Picture(64, 48, position).Sample())) ::_exit(1);
    }
    ::raise(SIGKILL);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
  ExpectFrames(21, 20);
}

TEST_F(AviFilesTest, RefusesWhatCannotBeAClip) {
  EXPECT_FALSE(files_.Create(Path("missing/clip.avi").string()));
  EXPECT_FALSE(files_.Create("/dev/null"));

  auto file = files_.Create(Path().string());
  ASSERT_TRUE(file);
  EXPECT_FALSE(file->MakeCompressedStream({.codec = "MPEG-4"}));  // no stream yet
  EXPECT_TRUE(file->CreateStream({.scale = 1, .rate = 1, .width = 10, .height = 10}));
  EXPECT_FALSE(file->SetFormat(InfoHeader(10, 10)));  // not compressed yet
  EXPECT_TRUE(file->MakeCompressedStream({.codec = "HuffYUV"}));
  EXPECT_FALSE(file->SetFormat(InfoHeader(10, -10)));
  EXPECT_FALSE(file->SetFormat(InfoHeader(10, 10, 8)));
  EXPECT_FALSE(file->Write(0, Picture(10, 10, 0).Sample()));
  // Tried again, it goes on.
  EXPECT_TRUE(file->SetFormat(InfoHeader(10, 10)));
  EXPECT_TRUE(file->Write(0, Picture(10, 10, 0).Sample()));
  file->Release();
  ExpectFrames(1, 1);
}

TEST_F(AviFilesTest, LeavesNoFileOfAClipThatNeverBegan) {
  auto given_up = files_.Create(Path().string());
  EXPECT_TRUE(std::filesystem::exists(Path()));
  given_up->Release();
  EXPECT_FALSE(std::filesystem::exists(Path()));

  // Given up late, it does not take the file with it that has its name by then.
  given_up = files_.Create(Path().string());
  std::filesystem::remove(Path());
  const auto next = Begin({.codec = "Motion JPEG"}, 16, 16);
  given_up.reset();
  EXPECT_TRUE(std::filesystem::exists(Path()));
}

}  // namespace
}  // namespace orbelcast
