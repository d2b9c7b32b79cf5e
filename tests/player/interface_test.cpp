#include <gtest/gtest.h>

#include <map>
#include <string_view>

#include "player/interface.h"

namespace orbelcast {
namespace {

namespace table = user_control1_interface;

// Hosts that were compiled against the interface call by these numbers.
TEST(PlayerInterfaceTest, EveryMemberHasItsId) {
  std::map<std::string_view, std::uint32_t> ids;
  for (const auto& entry : table::Properties()) ids[entry.name] = entry.id;
  for (const auto& entry : table::Methods()) ids[entry.name] = entry.id;
  const std::map<std::string_view, std::uint32_t> expected{{"AviStart", 0x60030008},
                                                           {"StopAvi", 0x60030011},
                                                           {"RefreshURLs", 0x60030018},
                                                           {"DoResize", 0x60030022},
                                                           {"Connect2Server", 0x6003002a},
                                                           {"SystemName", 0x6803002b},
                                                           {"ShowExtendedFeatures", 0x6803002c},
                                                           {"SetMultiCams", 0x60030037}};
  EXPECT_EQ(ids, expected);
}

}  // namespace
}  // namespace orbelcast
