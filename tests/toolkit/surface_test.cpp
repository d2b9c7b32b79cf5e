#include "toolkit/surface.h"

#include <gtest/gtest.h>

#include <climits>

namespace orbelcast {
namespace {

constexpr Color kBack = Rgb(10, 20, 30);
constexpr Color kInk = Rgb(200, 100, 50);

TEST(SurfaceTest, WhatIsDrawnOutsideIsClipped) {
  Surface surface(4, 3, kBack);
  surface.FillBox(2, 5, -7, 1, kInk);  // its corners in any order
  EXPECT_TRUE(surface.Point(2, 1) == kInk && surface.Point(0, 2) == kInk);
  EXPECT_TRUE(surface.Point(3, 1) == kBack && surface.Point(2, 0) == kBack);
  EXPECT_TRUE(surface.Point(-1, 0) == kNoColor && surface.Point(4, 0) == kNoColor && surface.Point(0, 3) == kNoColor);
  const auto revision = surface.Revision();
  surface.FillBox(4, 0, 9, 9, kInk);
  surface.Draw(Surface(2, 2, kInk), INT_MAX, 0);
  surface.Draw(Surface(2, 2, kInk), INT_MIN, INT_MIN);
  EXPECT_EQ(surface.Revision(), revision);
  surface.Draw(Surface(2, 2, kInk), 3, -1);
  EXPECT_TRUE(surface.Point(3, 0) == kInk && surface.Point(3, 1) == kBack);
}

TEST(SurfaceTest, TransparentPixelsAreBlended) {
  Surface icon(2, 1);
  icon.MutablePixels()[0] = 0x00ffffff;
  icon.MutablePixels()[1] = 0x80ffffff;
  Surface surface(2, 1, Rgb(0, 0, 100));
  surface.Draw(icon, 0, 0);
  EXPECT_EQ(surface.Point(0, 0), Rgb(0, 0, 100));
  EXPECT_EQ(surface.Point(1, 0), Rgb(128, 128, 178));
}

TEST(SurfaceTest, KeepsWhatWasDrawnWhenItIsSizedAndRefusesSizesThatAreNone) {
  Surface surface(2, 2, kInk);
  const Surface copy = surface;
  surface.Resize(3, 1, kBack);
  EXPECT_TRUE(surface.Point(1, 0) == kInk && surface.Point(2, 0) == kBack);
  for (const auto& [width, height] : {std::pair(-1, 5), std::pair(Surface::kMaxSide + 1, 1), std::pair(65535, 65535)}) {
    surface.Resize(width, height, kBack);
    EXPECT_TRUE(surface.Empty() && surface.Pixels().empty());
    surface.Fill(kInk);
  }
  EXPECT_EQ(copy.Point(1, 1), kInk);
}

}  // namespace
}  // namespace orbelcast
