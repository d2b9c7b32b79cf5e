// Surfaces whose pictures are decoded when somebody looks, beside surfaces whose pictures are decoded at once.

#include "toolkit/pictures_on_demand.h"

#include <gtest/gtest.h>

#include <optional>
#include <random>

#include "adapters/jpeg/jpeg_decoder.h"
#include "pictures.h"

namespace orbelcast {
namespace {

class PicturesOnDemandTest : public testing::Test {
 protected:
  void Show(const FrameBytes& frame) {
    const JpegTarget both[]{{area, area.Width(), area.Height()}, {thumbnail, 100, 100}};
    EXPECT_TRUE(on_demand.DrawWhenSeen(frame, both));
  }
  void ShowNew() { Show(FrameBytes(Picture("420"))); }

  std::shared_ptr<TurboJpegDecoder> decoder = std::make_shared<TurboJpegDecoder>();
  PicturesOnDemand on_demand{decoder};
  Surface area{330, 246};
  Surface thumbnail{89, 82};
};

TEST_F(PicturesOnDemandTest, OnlyWhatIsSeenIsDecodedAndTakesMemory) {
  const auto pixels = pixels_in_use.load();
  for (int i = 0; i < 5; ++i) ShowNew();
  EXPECT_EQ(decoder->Decodes(), 0U);
  EXPECT_EQ(pixels_in_use, pixels);
  thumbnail.Point(0, 0);  // The area, which nobody has ever seen, stays without pixels.
  EXPECT_EQ(decoder->Decodes(), 1U);
  EXPECT_EQ(area.Memory(), nullptr);

  // Somebody looks at both: each picture is decoded once for the two of them.
  for (int i = 0; i < 5; ++i) {
    area.Pixels();
    thumbnail.Point(0, 0);
    ShowNew();
  }
  EXPECT_EQ(decoder->Decodes(), 5U);
  thumbnail.Point(0, 0);
  const auto decodes = decoder->Decodes();
  area.Pixels();
  EXPECT_EQ(decoder->Decodes(), decodes);

  // Until nobody looks at the area any more.
  for (int i = 0; i < 2; ++i) {
    ShowNew();
    thumbnail.Point(0, 0);
  }
  area.Pixels();
  EXPECT_EQ(decoder->Decodes(), decodes + 2);  // From the picture that the decoder still has.
}

TEST_F(PicturesOnDemandTest, DamageIsFoundAtOnceOrLeavesThePictureBefore) {
  const auto refused = [&](Bytes bytes) {
    const JpegTarget target{area, 330, 246};
    return !on_demand.DrawWhenSeen(FrameBytes(std::move(bytes)), {&target, 1});
  };
  ShowNew();
  const Surface good = area;
  auto cut = Picture("420");
  cut.resize(cut.size() - 30);
  EXPECT_TRUE(refused(cut) && refused({}) && refused(Bytes(5000, 0x5a)));
  Show(FrameBytes(Scrambled()));
  EXPECT_FALSE(area.NewestWasDamaged());
  EXPECT_TRUE(std::ranges::equal(area.Pixels(), good.Pixels()));
  EXPECT_TRUE(area.NewestWasDamaged());
  area.FillBox(0, 0, 5, 5, Rgb(1, 2, 3));
  EXPECT_FALSE(area.NewestWasDamaged());
  ShowNew();
  EXPECT_FALSE(area.NewestWasDamaged());
}

TEST_F(PicturesOnDemandTest, SurfacesMayMoveAndEndWithPicturesThatNobodyHasSeen) {
  ShowNew();
  std::optional<Surface> moved = std::move(area);
  area = Surface(330, 246);
  thumbnail.Point(0, 0);
  const auto decodes = decoder->Decodes();
  EXPECT_NE(moved->Point(100, 100), area.Point(100, 100));
  EXPECT_EQ(decoder->Decodes(), decodes);
  ShowNew();
  moved = std::nullopt;
  area = {};
  thumbnail.Point(0, 0);
}

// Whatever is drawn in whatever order, and whenever somebody looks: the pixels are those of drawing at once.
TEST_F(PicturesOnDemandTest, PixelsAreThoseOfDrawingAtOnce) {
  TurboJpegDecoder at_once;
  const char* const kinds[]{"420", "grey", "cmyk", "progressive"};
  Surface icon(16, 16, Rgb(200, 0, 0));
  for (unsigned seed = 0; seed < 40; ++seed) {
    std::mt19937 random(seed);
    const auto any = [&](int below) { return static_cast<int>(random() % static_cast<unsigned>(below)); };
    Surface seen_area(330, 246, Rgb(9, 8, 7));
    Surface seen_thumbnail(89, 82);
    area = Surface(330, 246, Rgb(9, 8, 7));
    thumbnail = Surface(89, 82);
    const auto on_both = [&](auto draw) {
      draw(area);
      draw(seen_area);
    };
    bool may_be_damaged = false;  // one at a time: of two the surface need not know what was before
    for (int step = 0; step < 30; ++step) {
      const bool damaged = may_be_damaged && any(5) == 0;
      const auto bytes = damaged ? Scrambled() : Picture(kinds[any(4)]);
      if (damaged) may_be_damaged = false;
      const FrameBytes lazy(bytes);
      const FrameBytes now(bytes);
      const int x = any(400) - 50;
      const int y = any(300) - 50;
      switch (any(8)) {
        case 0:
          on_both([&](Surface& to) { to.FillBox(x, y, x + 100, y + 60, Rgb(x & 255, 1, 2)); });
          break;
        case 1:
          on_both([&](Surface& to) { to.OutlineBox(x, y, x + 20, 5, Rgb(3, y & 255, 2)); });
          break;
        case 2:
          on_both([&](Surface& to) { to.Draw(icon, x, y); });
          break;
        case 3:
          on_both([&](Surface& to) { to.Resize(300 + step, 200, Rgb(5, 5, 5)); });
          break;
        case 4:
        case 5: {
          on_demand.DrawWhenSeen(lazy, std::vector<JpegTarget>{{area, 80, 60, x, y}});
          at_once.DrawOn({seen_area, 80, 60, x, y}, now);
          break;
        }
        default:
          Show(lazy);
          const JpegTarget both[]{{seen_area, seen_area.Width(), seen_area.Height()}, {seen_thumbnail, 100, 100}};
          at_once.DrawOnAll(now, both);
          may_be_damaged |= !damaged;
          if (any(2) == 0) {
            ASSERT_TRUE(std::ranges::equal(thumbnail.Pixels(), seen_thumbnail.Pixels())) << seed;
          }
      }
      if (any(3) == 0) {
        ASSERT_TRUE(std::ranges::equal(area.Pixels(), seen_area.Pixels())) << seed << ' ' << step;
      }
    }
    EXPECT_TRUE(std::ranges::equal(area.Pixels(), seen_area.Pixels()));
    EXPECT_TRUE(std::ranges::equal(thumbnail.Pixels(), seen_thumbnail.Pixels()));
  }
}

}  // namespace
}  // namespace orbelcast
