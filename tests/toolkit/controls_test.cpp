#include "toolkit/controls.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace orbelcast {
namespace {

TEST(ItemListTest, AnItemOfTheListIsClickedOnceAndNothingElseIs) {
  ComboBox list;
  std::string log;
  list.OnClick = [&] { log += "click" + std::to_string(list.ListIndex()) + " "; };
  list.ListIndexChanged.Listen([&](int index) { log += "at" + std::to_string(index) + " "; });
  list.AddItem("a");
  list.AddItem("b");
  EXPECT_TRUE(list.ListIndex(1));
  EXPECT_TRUE(list.ListIndex(1));  // nothing new
  EXPECT_TRUE(list.Choose(1));     // a user's choice all the same
  EXPECT_TRUE(list.ListIndex(-1));
  for (const int none : {-2, 2}) EXPECT_FALSE(list.ListIndex(none) || list.Choose(none));
  EXPECT_EQ(log, "at1 click1 click1 at-1 ");
}

TEST(ItemListTest, ItsClickHandlingMayEndTheList) {
  auto list = std::make_unique<ListBox>();
  list->AddItem("a");
  list->OnClick = [&list] { list.reset(); };
  EXPECT_TRUE(list->Choose(0));
}

TEST(ListBoxTest, SelectionsEndWithTheItems) {
  ListBox list;
  for (const bool again : {false, true}) {
    for (const char* item : {"a", "b", "c"}) list.AddItem(item);
    EXPECT_FALSE(list.Selected(2)) << again;
    for (const int index : {2, 0, 2, -1, 3}) list.Selected(index, true);
    list.Selected(0, false);
    EXPECT_TRUE(list.Selected(2) && !list.Selected(0) && !list.Selected(-1) && !list.Selected(3));
    list.Clear();
  }
}

// The surface follows the size by each direction's own scale.
TEST(PictureBoxTest, HasItsSizeInPixels) {
  PictureBox box;
  box.SetScale({.x = 8, .y = 12});
  Place(box, 0, 0, 20, 30);
  box.Canvas().Fill(Rgb(1, 2, 3));
  EXPECT_EQ(box.Image().Width(), 2);
  EXPECT_EQ(box.Image().Height(), 2);
  box.Width = 32;
  EXPECT_EQ(box.Image().Point(1, 1), Rgb(1, 2, 3));
  EXPECT_EQ(box.Image().Point(3, 1), Rgb(255, 255, 255));
}

}  // namespace
}  // namespace orbelcast
