// The player on a scripted server and a clock that the test moves.

#include <gmock/gmock.h>

#include "fakes/fake_platform.h"
#include "player/user_control1.h"

namespace orbelcast {
namespace {

TEST(PlayerTest, Starts) {
  fakes::FakePlatform world;
  const auto player = UserControl1::Create(world.platform);
  EXPECT_EQ(player->FrameRate.ListIndex(), 0);
  EXPECT_EQ(player->Resolution.ListIndex(), 15);
  EXPECT_EQ(player->Resolution.ListCount(), 30);
}

}  // namespace
}  // namespace orbelcast
