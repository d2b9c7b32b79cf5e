// Pictures of every kind, whole and damaged, drawn onto surfaces.

#include "adapters/jpeg/jpeg_decoder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>

#include <jpeglib.h>

namespace orbelcast {
namespace {

struct Kind {
  const char* name;
  J_COLOR_SPACE color = JCS_YCbCr;
  int horizontal = 2;
  int vertical = 2;
  bool progressive = false;
  bool a_scan_each = false;  ///< A scan for each coefficient of each component: 64 of a grey picture, 190 of three.
};

/// A scan for all DC coefficients, then one for each other coefficient of each component.
std::vector<jpeg_scan_info> AScanEach(int components) {
  std::vector<jpeg_scan_info> scans{{components, {0, 1, 2}, 0, 0, 0, 0}};
  for (int component = 0; component < components; ++component) {
    for (int coefficient = 1; coefficient < 64; ++coefficient) {
      scans.push_back({1, {component}, coefficient, coefficient, 0, 0});
    }
  }
  return scans;
}

/// A smooth picture with edges: what cameras see, without noise.
std::vector<std::uint8_t> Encode(const Kind& kind, int width, int height) {
  jpeg_compress_struct compress{};
  jpeg_error_mgr errors{};
  compress.err = jpeg_std_error(&errors);
  jpeg_create_compress(&compress);
  unsigned char* bytes = nullptr;
  unsigned long size = 0;
  jpeg_mem_dest(&compress, &bytes, &size);
  compress.image_width = static_cast<JDIMENSION>(width);
  compress.image_height = static_cast<JDIMENSION>(height);
  const bool grey = kind.color == JCS_GRAYSCALE;
  const bool cmyk = kind.color == JCS_CMYK || kind.color == JCS_YCCK;
  compress.input_components = grey ? 1 : cmyk ? 4 : 3;
  compress.in_color_space = grey ? JCS_GRAYSCALE : cmyk ? JCS_CMYK : JCS_RGB;
  jpeg_set_defaults(&compress);
  jpeg_set_colorspace(&compress, kind.color);
  jpeg_set_quality(&compress, 90, TRUE);
  compress.comp_info[0].h_samp_factor = kind.horizontal;
  compress.comp_info[0].v_samp_factor = kind.vertical;
  if (kind.progressive) jpeg_simple_progression(&compress);
  const auto scans = AScanEach(compress.num_components);
  if (kind.a_scan_each) {
    compress.scan_info = scans.data();
    compress.num_scans = static_cast<int>(scans.size());
  }
  jpeg_start_compress(&compress, TRUE);
  std::vector<std::uint8_t> row;
  while (compress.next_scanline < compress.image_height) {
    row.clear();
    const double v = compress.next_scanline / static_cast<double>(height);
    for (int x = 0; x < width; ++x) {
      const double u = x / static_cast<double>(width);
      const double wave = 30 * std::sin(u * 9 + 4 * v) + (u > 0.5 ? 20 : 0);
      for (int c = 0; c < compress.input_components; ++c) {
        row.push_back(static_cast<std::uint8_t>(110 + wave + 60 * (c == 0 ? u : c == 1 ? v : 1 - u)));
      }
      if (cmyk) row.back() = 200;
    }
    JSAMPROW pointer = row.data();
    jpeg_write_scanlines(&compress, &pointer, 1);
  }
  jpeg_finish_compress(&compress);
  jpeg_destroy_compress(&compress);
  std::vector<std::uint8_t> file(bytes, bytes + size);
  std::free(bytes);
  return file;
}

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
  static FrameBytes Frame(std::vector<std::uint8_t> bytes) { return FrameBytes(std::move(bytes)); }
  bool DrawWhole(Surface& target, const FrameBytes& frame) {
    return decoder.DrawOn({target, target.Width(), target.Height()}, frame).has_value();
  }
  TurboJpegDecoder decoder;
};

TEST_F(JpegDecoderTest, EveryKindOfPictureIsDrawnAtEverySize) {
  const Kind kinds[] = {{"4:2:0"},
                        {"4:2:2", JCS_YCbCr, 2, 1},
                        {"4:4:4", JCS_YCbCr, 1, 1},
                        {"4:4:0", JCS_YCbCr, 1, 2},
                        {"grey", JCS_GRAYSCALE, 1, 1},
                        {"RGB", JCS_RGB, 1, 1},
                        {"CMYK", JCS_CMYK, 1, 1},
                        {"YCCK", JCS_YCCK, 2, 2},
                        {"progressive", JCS_YCbCr, 2, 2, true},
                        {"64 scans", JCS_GRAYSCALE, 1, 1, true, true}};
  for (const Kind& kind : kinds) {
    SCOPED_TRACE(kind.name);
    const auto file = Encode(kind, 330, 246);
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
  const FrameBytes frame = Frame(Encode({"4:2:0"}, 640, 480));
  Surface area(640, 480);
  Surface thumbnail(89, 82);
  Surface tiles(300, 300, Rgb(1, 1, 1));
  const JpegTarget together[]{{thumbnail, 100, 100}, {area, 640, 480}, {tiles, -1, 100}};
  EXPECT_EQ(decoder.SizeOf(frame)->width, 640);
  ASSERT_TRUE(decoder.DrawOnAll(frame, together));
  ASSERT_TRUE(decoder.DrawOn({tiles, 100, 100, 100, 100}, frame));
  EXPECT_EQ(decoder.Decodes(), 1u);
  EXPECT_EQ(tiles.Point(99, 100), Rgb(1, 1, 1));
  EXPECT_EQ(tiles.Point(100, 200), Rgb(1, 1, 1));
  EXPECT_EQ(tiles.Point(110, 110), thumbnail.Point(10, 10));

  // A surface that somebody drew on is no source any more, and neither is one that is gone.
  area.FillBox(0, 0, 639, 479, Rgb(0, 0, 0));
  ASSERT_TRUE(decoder.DrawOn({thumbnail, 100, 100}, frame));
  EXPECT_EQ(decoder.Decodes(), 2u);
  EXPECT_NEAR(RedOf(tiles.Point(110, 110)), RedOf(thumbnail.Point(10, 10)), 8);
  const FrameBytes other = Frame(Encode({"4:2:0"}, 640, 480));
  {
    Surface passing(640, 480);
    ASSERT_TRUE(DrawWhole(passing, other));
  }
  ASSERT_TRUE(decoder.DrawOn({thumbnail, 100, 100}, other));
}

TEST_F(JpegDecoderTest, PlacesAreClippedToTheSurface) {
  const FrameBytes frame = Frame(Encode({"4:4:4", JCS_YCbCr, 1, 1}, 64, 64));
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
  const auto good = Encode({"4:2:0"}, 320, 240);
  const auto cut = [&](std::size_t size) {
    return std::vector<std::uint8_t>(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(size));
  };
  auto scrambled = good;
  for (std::size_t i = good.size() / 2; i < good.size() / 2 + 200; ++i)
    scrambled[i] = static_cast<std::uint8_t>(i * 37);
  // Its first quantization table under another number: the one that it goes by would be that of a picture before.
  auto without_table = good;
  for (std::size_t i = 0; i + 4 < good.size(); ++i) {
    if (good[i] == 0xff && good[i + 1] == 0xdb && good[i + 4] == 0) without_table[i + 4] = 3;
  }
  Surface target(320, 240);
  ASSERT_TRUE(DrawWhole(target, Frame(good)));
  const std::pair<const char*, std::vector<std::uint8_t>> files[] = {
      {"without a table of its own", without_table},
      {"ends in the middle", cut(good.size() / 2)},
      {"ends in the header", cut(100)},
      {"no end marker", cut(good.size() - 30)},
      {"garbage", std::vector<std::uint8_t>(5000, 0x5a)},
      {"scrambled", scrambled},
      {"190 scans", Encode({"190 scans", JCS_YCbCr, 2, 2, true, true}, 320, 240)},
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
  EXPECT_EQ(decoder.SizeOf(Frame(scrambled))->height, 240);
  EXPECT_TRUE(DrawWhole(target, Frame(good)));
}

TEST_F(JpegDecoderTest, LargePicturesHaveALimitTogetherAndKeepOutNoOrdinaryOne) {
  const FrameBytes large = Frame(Encode({"grey", JCS_GRAYSCALE, 1, 1}, 4000, 2100));
  const FrameBytes ordinary = Frame(Encode({"grey", JCS_GRAYSCALE, 1, 1}, 400, 210));
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
