#include "imaging/motion.h"

#include <gmock/gmock.h>

namespace orbelcast {
namespace {

constexpr int kWidth = 89;
constexpr int kHeight = 82;

class MotionTest : public testing::Test {
 protected:
  std::optional<MotionFound> Scan() {
    samples = 0;
    return ScanMotion(current, reference, overlay, settings, [this] { return after_sample(++samples); });
  }
  void Watch(int x1, int x2, int y1, int y2) {
    settings.MotionArea_x1 = x1;
    settings.MotionArea_x2 = x2;
    settings.MotionArea_y1 = y1;
    settings.MotionArea_Y2 = y2;
  }
  /// The colour of the sample's square on the overlay, away from the bounding box.
  Color Cell(int x, int y) const { return overlay.Point(x + 1, y + 1); }

  Surface current{kWidth, kHeight, Rgb(0, 0, 0)};
  Surface reference{kWidth, kHeight, Rgb(64, 64, 64)};
  Surface overlay{kWidth, kHeight, Rgb(64, 64, 64)};
  MotionSettings settings;
  int samples = 0;
  std::function<bool(int)> after_sample = [](int) { return true; };
};

TEST_F(MotionTest, GreyLevelsAreWeightedAndRoundedToEven) {
  const std::pair<Color, int> levels[]{
      {Rgb(255, 255, 255), 254}, {Rgb(255, 0, 0), 76}, {Rgb(0, 255, 0), 150}, {Rgb(0, 0, 255), 28}, {kNoColor, 0}};
  for (const auto& [color, level] : levels) EXPECT_EQ(GrayLevel(color), level) << color;
}

TEST_F(MotionTest, TheReferenceTakesTheNewLevelAndTheOverlayShowsTheOldOne) {
  settings.MotionByZones = true;
  settings.Threshold = 20;
  current.Fill(Rgb(255, 255, 255));
  EXPECT_TRUE(Scan()->Any());
  EXPECT_EQ(Cell(40, 40), Rgb(64, 0, 0));
  EXPECT_EQ(reference.Point(43, 43), Rgb(254, 254, 254));
  EXPECT_FALSE(Scan()->Any());
  EXPECT_EQ(Cell(40, 40), Rgb(253, 253, 0));  // The grey of 254 has level 253.
  // A difference below a hundredth counts as none.
  settings.Threshold = 1;
  for (const int level : {102, 103}) {
    reference.Fill(Rgb(100, 100, 100));
    current.Fill(Rgb(level, level, level));
    EXPECT_EQ(Scan()->Any(), level == 103);
  }
}

TEST_F(MotionTest, TheRectangleForgetsItsBottomEdgeAndAFullOneItsTopAndLeft) {
  Watch(10, 50, 10, 40);
  // A threshold of 0 finds motion below the thumbnail too.
  EXPECT_THAT(*Scan(), testing::FieldsAre(12, 12, 48, 92, -1));
  EXPECT_EQ(Cell(20, 60), Rgb(64, 0, 0));
  EXPECT_EQ(Cell(8, 60), Rgb(0, 64, 0));
  EXPECT_EQ(Cell(20, 8), Rgb(0, 64, 0));
  EXPECT_EQ(overlay.Point(12, 20), Rgb(128, 128, 0));

  Watch(0, 100, 0, 100);
  settings.Threshold = 20;
  reference.Fill(Rgb(64, 64, 64));
  Scan();
  EXPECT_EQ(Cell(0, 40), Rgb(64, 64, 0));
  EXPECT_EQ(Cell(40, 0), Rgb(64, 64, 0));
  EXPECT_EQ(Cell(40, 40), Rgb(64, 0, 0));
}

TEST_F(MotionTest, TheBoxBeginsAtTheFirstSampleNotTheLeftmost) {
  settings.MotionByZones = true;
  settings.Threshold = 20;
  reference.Fill(Rgb(0, 0, 0));
  current.FillBox(40, 8, 43, 11, Rgb(255, 255, 255));
  current.FillBox(12, 20, 15, 23, Rgb(255, 255, 255));
  EXPECT_THAT(*Scan(), testing::FieldsAre(40, 8, 40, 20, 3));
}

TEST_F(MotionTest, ZonesAreNumberedRowByRowAndSettingsHoldFromTheNextSampleOn) {
  settings.MotionByZones = true;
  settings.MotionString = std::string(12, '0');
  EXPECT_EQ(Scan()->Area, 13);
  settings.MotionString.clear();
  after_sample = [&](int sample) {
    if (sample == 23) settings.MotionString = std::string(25, '0');
    return true;
  };
  EXPECT_THAT(*Scan(), testing::FieldsAre(0, 0, 88, 0, 1));
  EXPECT_EQ(samples, 552);
}

}  // namespace
}  // namespace orbelcast
