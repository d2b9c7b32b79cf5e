#include <gtest/gtest.h>

#include <set>

#include "viewer/interface.h"

namespace orbelcast {
namespace {

namespace table = video_server_push_interface;

TEST(ViewerInterfaceTest, EveryMemberStandsOnceUnderAnIdOfItsOwn) {
  EXPECT_EQ(table::Properties().size(), 19u);
  EXPECT_EQ(table::Methods().size(), 13u);
  EXPECT_EQ(table::Events().size(), 16u);
  std::set<std::string_view> names;
  std::set<std::uint32_t> ids;
  for (const auto& entry : table::Properties()) {
    names.insert(entry.name);
    ids.insert(entry.id);
  }
  for (const auto& entry : table::Methods()) {
    names.insert(entry.name);
    ids.insert(entry.id);
  }
  EXPECT_EQ(names.size(), 32u);
  EXPECT_EQ(ids.size(), 32u);
  for (std::size_t i = 0; i < table::Events().size(); ++i) EXPECT_EQ(table::Events()[i].id, i + 1);
}

}  // namespace
}  // namespace orbelcast
