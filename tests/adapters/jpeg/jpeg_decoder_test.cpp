// Pictures of every kind, whole and damaged, drawn onto surfaces.

#include "adapters/jpeg/jpeg_decoder.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "pictures.h"

namespace orbelcast {
namespace {

/// How far two pictures differ on the average, at the same places of each: in steps of 256.
double Difference(const Surface& a, const Surface& b) {
  constexpr int kPlaces = 40;
  const auto at = [](const Surface& surface, int x, int y) {
    return surface.Point((2 * x + 1) * surface.Width() / (2 * kPlaces), (2 * y + 1) * surface.Height() / (2 * kPlaces));
  };
  int sum = 0;
  for (int y = 0; y < kPlaces; ++y) {
    for (int x = 0; x < kPlaces; ++x) {
      const Color one = at(a, x, y);
      const Color other = at(b, x, y);
      sum += std::abs(RedOf(one) - RedOf(other)) + std::abs(GreenOf(one) - GreenOf(other)) +
             std::abs(BlueOf(one) - BlueOf(other));
    }
  }
  return sum / (3.0 * kPlaces * kPlaces);
}

class JpegDecoderTest : public testing::Test {
 protected:
  static FrameBytes Frame(Bytes bytes) { return FrameBytes(std::move(bytes)); }
  bool DrawWhole(Surface& target, const FrameBytes& frame) {
    return decoder.DrawOn({target, target.Width(), target.Height()}, frame).has_value();
  }
  TurboJpegDecoder decoder;
};

TEST_F(JpegDecoderTest, EveryKindOfPictureIsDrawnAtEverySize) {
  for (const char* kind : {"420", "422", "444", "440", "grey", "rgb", "cmyk", "ycck", "progressive", "64_scans"}) {
    SCOPED_TRACE(kind);
    const Bytes file = Picture(kind);
    Surface native(330, 246);
    Surface thumbnail(110, 82);
    const JpegTarget together[]{{native}, {thumbnail, 110, 82}};
    const auto size = decoder.DrawOnAll(Frame(file), together);
    ASSERT_TRUE(size);
    EXPECT_EQ(size->width, 330);
    EXPECT_EQ(size->height, 246);
    EXPECT_EQ(native.Pixels().front() >> 24, 0xffu);
    EXPECT_LT(Difference(thumbnail, native), 3);
    for (const int divisor : {1, 2, 3, 6}) {
      Surface small(330 / divisor, 246 / divisor);
      ASSERT_TRUE(DrawWhole(small, Frame(file)));
      EXPECT_LT(Difference(small, native), 3) << divisor;
    }
    Surface large(660, 492);
    ASSERT_TRUE(DrawWhole(large, Frame(file)));
    EXPECT_LT(Difference(large, native), 3);
    Surface stretched(500, 300);
    ASSERT_TRUE(DrawWhole(stretched, Frame(file)));
    for (const std::uint32_t pixel : stretched.Pixels()) ASSERT_EQ(pixel >> 24, 0xffU);
  }
}

TEST_F(JpegDecoderTest, OneFrameIsDecodedOnceHoweverOftenItIsDrawn) {
  const FrameBytes frame = Frame(Picture("420"));
  Surface area(330, 246);
  Surface thumbnail(89, 82);
  Surface tiles(300, 300, Rgb(1, 1, 1));
  const JpegTarget together[]{{thumbnail, 100, 100}, {area, 330, 246}, {tiles, -1, 100}};
  EXPECT_EQ(decoder.SizeOf(frame)->width, 330);
  ASSERT_TRUE(decoder.DrawOnAll(frame, together));
  ASSERT_TRUE(decoder.DrawOn({tiles, 100, 100, 100, 100}, frame));
  EXPECT_EQ(decoder.Decodes(), 1u);
  EXPECT_EQ(tiles.Point(99, 100), Rgb(1, 1, 1));
  EXPECT_EQ(tiles.Point(100, 200), Rgb(1, 1, 1));
  EXPECT_EQ(tiles.Point(110, 110), thumbnail.Point(10, 10));

  // A surface that somebody drew on is no source any more, and neither is one that is gone.
  area.FillBox(0, 0, 329, 245, Rgb(0, 0, 0));
  ASSERT_TRUE(decoder.DrawOn({thumbnail, 100, 100}, frame));
  EXPECT_EQ(decoder.Decodes(), 2u);
  EXPECT_NEAR(RedOf(tiles.Point(110, 110)), RedOf(thumbnail.Point(10, 10)), 8);
  const FrameBytes other = Frame(Picture("420"));
  {
    Surface passing(330, 246);
    ASSERT_TRUE(DrawWhole(passing, other));
  }
  ASSERT_TRUE(decoder.DrawOn({thumbnail, 100, 100}, other));
}

TEST_F(JpegDecoderTest, PlacesAreClippedToTheSurface) {
  const FrameBytes frame = Frame(Picture("444"));
  Surface whole(40, 40);
  ASSERT_TRUE(DrawWhole(whole, frame));
  Surface target(30, 30, Rgb(0, 0, 0));
  ASSERT_TRUE(decoder.DrawOn({target, 40, 40, -10, -20}, frame));
  EXPECT_EQ(target.Point(0, 0), whole.Point(10, 20));
  EXPECT_EQ(target.Point(29, 19), whole.Point(39, 39));
  EXPECT_EQ(target.Point(5, 20), Rgb(0, 0, 0));
  decoder.DrawOn({target, 40, 40, 1000, 1000}, frame);
  EXPECT_FALSE(decoder.DrawOn({target, -1, 40, 5, 5}, frame));
}

TEST_F(JpegDecoderTest, DamagedPicturesLeaveEverySurfaceAsItWas) {
  const Bytes good = Picture("420");
  const auto cut = [&](std::size_t size) {
    return Bytes(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(size));
  };
  // Its first quantization table under another number: the one that it goes by would be that of a picture before.
  auto without_table = good;
  for (std::size_t i = 0; i + 4 < good.size(); ++i) {
    if (good[i] == 0xff && good[i + 1] == 0xdb && good[i + 4] == 0) without_table[i + 4] = 3;
  }
  Surface target(320, 240);
  ASSERT_TRUE(DrawWhole(target, Frame(good)));
  const std::pair<const char*, Bytes> files[] = {{"without a table of its own", without_table},
                                                 {"ends in the middle", cut(good.size() / 2)},
                                                 {"ends in the header", cut(100)},
                                                 {"no end marker", cut(good.size() - 30)},
                                                 {"garbage", Bytes(5000, 0x5a)},
                                                 {"scrambled", Scrambled()},
                                                 {"190 scans", Picture("190_scans")},
                                                 {"empty", {}}};
  for (const auto& [name, file] : files) {
    for (const int size : {320, 160, 100}) {
      Surface shown(320, 240, Rgb(9, 8, 7));
      Surface thumbnail(89, 82, Rgb(9, 8, 7));
      const JpegTarget together[]{{shown, size, size * 3 / 4}, {thumbnail, 100, 100}};
      EXPECT_FALSE(decoder.DrawOnAll(FrameBytes(file), together)) << name;
      for (const Surface* kept : {&shown, &thumbnail}) {
        for (const std::uint32_t pixel : kept->Pixels()) ASSERT_EQ(pixel & 0xffffff, 0x090807u) << name;
      }
    }
  }
  // The header of a damaged picture can be read all the same; the next good one shows.
  EXPECT_EQ(decoder.SizeOf(Frame(Scrambled()))->height, 246);
  EXPECT_TRUE(DrawWhole(target, Frame(good)));
}

TEST_F(JpegDecoderTest, LargePicturesHaveALimitTogetherAndKeepOutNoOrdinaryOne) {
  const FrameBytes large = Frame(Picture("large"));
  const FrameBytes ordinary = Frame(Picture("grey"));
  Surface target(4000, 2100);
  const std::int64_t others = 3 * Surface::kMaxPixels - pixels_in_use - 4000 * 2100 + 1;
  pixels_in_use += others;
  EXPECT_FALSE(decoder.DrawOn({target}, large));
  EXPECT_TRUE(decoder.DrawOn({target}, ordinary));
  pixels_in_use -= others;
  EXPECT_TRUE(decoder.DrawOn({target}, large));
}

}  // namespace
}  // namespace orbelcast
