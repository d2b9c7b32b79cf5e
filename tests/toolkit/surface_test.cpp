#include "toolkit/surface.h"

#include <gtest/gtest.h>

#include <climits>

namespace orbelcast {
namespace {

constexpr Color kBack = Rgb(10, 20, 30);
constexpr Color kInk = Rgb(200, 100, 50);

TEST(SurfaceTest, WhatIsDrawnOutsideIsClippedAndSizesThatAreNoneAreRefused) {
  Surface surface(4, 3, kBack);
  surface.FillBox(2, 5, -7, 1, kInk);  // its corners in any order
  EXPECT_TRUE(surface.Point(2, 1) == kInk && surface.Point(0, 2) == kInk);
  EXPECT_TRUE(surface.Point(3, 1) == kBack && surface.Point(2, 0) == kBack);
  const auto revision = surface.Revision();
  surface.Draw(Surface(2, 2, kInk), INT_MAX, 0);
  surface.Draw(Surface(2, 2, kInk), INT_MIN, INT_MIN);
  EXPECT_EQ(surface.Revision(), revision);
  Surface icon(2, 1);
  icon.MutablePixels()[0] = 0x80ffffff;
  surface.Draw(icon, 3, -1);
  surface.Draw(icon, 3, 0);
  EXPECT_EQ(surface.Point(3, 0), Rgb(133, 138, 143));

  const Surface copy = surface;
  for (const auto& [width, height] : {std::pair(-1, 5), std::pair(Surface::kMaxSide + 1, 1), std::pair(65535, 65535)}) {
    surface.Resize(width, height, kBack);
    EXPECT_TRUE(surface.Empty() && surface.Pixels().empty());
  }
  EXPECT_EQ(copy.Point(2, 1), kInk);
}

}  // namespace
}  // namespace orbelcast
