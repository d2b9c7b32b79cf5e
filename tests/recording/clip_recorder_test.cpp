// The recorder between a person who answers and a clip that notes what is done with it.

#include "recording/clip_recorder.h"

#include <gmock/gmock.h>

#include "fakes/fake_platform.h"
#include "fakes/temporary_folder.h"

namespace orbelcast {
namespace {

using testing::ElementsAre;

constexpr const char* kSave = "save Choose the filename... | Video Clip (*.avi)|*.avi";
constexpr const char* kOverwrite = "ask This file already exists, do you want to overwrite ? | AVI Maker";

std::string Done(int frames) {
  return "tell Done\r\nTotal frames: " + std::to_string(frames) + " | AVI Maker";
}

/// A picture of the fake decoder's: one colour, sides in tens of pixels.
ShownPicture Jpeg(std::uint8_t red, std::uint8_t green, std::uint8_t blue, std::uint8_t width, std::uint8_t height) {
  return FrameBytes({red, green, blue, width, height});
}

class ClipRecorderTest : public testing::Test {
 protected:
  void ExpectAnswers() {
    world.dialogs.names = {path};
    world.dialogs.compressions = {Dialogs::Compression{"MPEG-4", 10, 200}};
  }
  void Start() {
    ExpectAnswers();
    recorder.AviStart();
    ASSERT_TRUE(recorder.AviRecording());
  }

  const fakes::TemporaryFolder folder;
  const std::string path = folder.File("clip.avi");
  fakes::FakePlatform world;
  PictureBox conv;
  ShownPicture shown = Jpeg(10, 20, 30, 1, 2);
  int list_position = 0;
  ClipRecorder recorder{world.platform,
                        conv,
                        {.TakePicture = [this] { return shown; },
                         .DeclaredRate = [this] { return ClipRecorder::RateOfListPosition(list_position); },
                         .ShowRecording = [](bool) {}}};
};

TEST_F(ClipRecorderTest, RecordsAPictureForEachCallAndTellsTheNextPosition) {
  list_position = 4;
  Start();
  // 10 pixels take 30 bytes of a row that has 32.
  EXPECT_THAT(world.avi_files.log,
              ElementsAre("create " + path, "stream 5/1 10x20", "compress MPEG-4 10 200", "format 40"));
  world.avi_files.log.clear();
  recorder.WriteFrame();
  recorder.SkipTo(40);
  recorder.SkipTo(9);
  recorder.WriteFrame();
  // The stream runs on behind a message box.
  world.dialogs.while_open = [this] { recorder.WriteFrame(); };
  recorder.AviStart();  // The same as StopAvi.
  EXPECT_THAT(world.dialogs.log, ElementsAre(kSave, "compression", Done(41)));
  recorder.WriteFrame();
  recorder.StopAvi();  // Tells all the same.
  EXPECT_EQ(world.dialogs.log.back(), Done(42));
  EXPECT_THAT(world.avi_files.log, ElementsAre("write 1 10x20", "write 40 10x20", "write 41 10x20", "release"));
}

TEST_F(ClipRecorderTest, WritesTheBytesThatABitmapFileWouldHoldOnAnyScreen) {
  world.screen.twips_x = 12;
  world.screen.twips_y = 20;
  Start();
  Surface drawn(3, 2, Rgb(1, 2, 3));
  drawn.FillBox(2, 0, 2, 0, Rgb(200, 100, 50));
  shown = &drawn;
  recorder.WriteFrame();
  EXPECT_EQ(conv.Width, 3 * 12);
  EXPECT_EQ(conv.Height, 2 * 20);
  EXPECT_THAT(world.avi_files.samples.back(), ElementsAre(3, 2, 1, 3, 2, 1, 3, 2, 1, 0, 0, 0,  // the lower row
                                                          3, 2, 1, 3, 2, 1, 50, 100, 200, 0, 0, 0));
}

TEST_F(ClipRecorderTest, RepeatsAPictureWhereTheNextCannotBeLoadedAndGoesOn) {
  Start();
  recorder.WriteFrame();
  for (const ShownPicture& bad : {ShownPicture(FrameBytes()), Jpeg(1, 2, 3, 9, 0), ShownPicture(&conv.Picture())}) {
    shown = bad;
    recorder.WriteFrame();
    EXPECT_EQ(world.avi_files.samples.back(), world.avi_files.samples.front());
  }
  world.avi_files.fails = "write";
  shown = Jpeg(1, 1, 1, 3, 1);
  recorder.WriteFrame();
  EXPECT_EQ(world.avi_files.log.back(), "write 5 30x10");
  EXPECT_EQ(recorder.AviFrameIndex(), 6);
}

TEST_F(ClipRecorderTest, TellsWhichStepFailedAndKeepsWhatItHasOpened) {
  const std::pair<const char*, const char*> steps[]{{"stream", "Can't create compressed stream."},
                                                    {"compress", "Can't make compressed stream."},
                                                    {"format", "Can't select AVI format."}};
  for (const auto& [fails, message] : steps) {
    world.avi_files.fails = fails;
    world.dialogs.log.clear();
    ExpectAnswers();
    recorder.AviStart();
    EXPECT_THAT(world.dialogs.log,
                testing::IsSupersetOf({std::string("beep"), "tell " + std::string(message) + " | "}));
    EXPECT_FALSE(recorder.AviRecording());
    world.dialogs.compressions.clear();
  }
  world.dialogs.log.clear();
  world.avi_files.fails = "none";
  world.avi_files.log.clear();
  shown = FrameBytes({1, 2});
  ExpectAnswers();
  recorder.AviStart();
  EXPECT_THAT(world.dialogs.log, ElementsAre(kSave, "beep", "tell Can't create the first image. | "));
  shown = Jpeg(1, 2, 3, 1, 1);
  Start();  // The next start's file takes its place.
  EXPECT_THAT(world.avi_files.log, testing::Contains("release").Times(2));
}

TEST_F(ClipRecorderTest, SurvivesWhatTheHostDoesWhileAQuestionIsOpen) {
  // Stopped before it has begun: there is no file any more when the compression is chosen.
  ExpectAnswers();
  world.dialogs.while_open = [this] {
    if (world.dialogs.log.back() == "compression") recorder.StopAvi();
  };
  recorder.AviStart();
  EXPECT_THAT(world.dialogs.log,
              ElementsAre(kSave, "compression", Done(0), "beep", "tell Can't make compressed stream. | "));

  // Released at each question in turn: nothing more is asked, and the file is closed.
  folder.Write("clip.avi", "a clip");
  for (const std::string last : {kSave, kOverwrite, "compression"}) {
    world.avi_files.log.clear();
    ClipRecorder released(world.platform, conv,
                          {.TakePicture = [this] { return shown; },
                           .DeclaredRate = [] { return ClipRecorder::RateOfListPosition(0); },
                           .ShowRecording = [](bool) { FAIL(); }});
    ExpectAnswers();
    world.dialogs.answers = {Dialogs::Answer::kYes};
    world.dialogs.while_open = [&] {
      if (world.dialogs.log.back() == last) released.End();
    };
    released.AviStart();
    EXPECT_EQ(world.dialogs.log.back(), last);
    EXPECT_EQ(world.avi_files.log.empty(), last != "compression");
    EXPECT_EQ(std::filesystem::exists(path), last != "compression");
  }
}

}  // namespace
}  // namespace orbelcast
