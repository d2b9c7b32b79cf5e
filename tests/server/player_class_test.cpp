#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fakes/scripted_server.h"
#include "server/host_fixture.h"

namespace orbelcast::server {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class PlayerClassTest : public HostTest {
 protected:
  PlayerClassTest() : HostTest("UserControl1") {}

  /// Counts no reference, so that the control can be released meanwhile.
  Result Load(const std::vector<std::pair<std::string, std::string>>& bag) {
    IControl* const container = control.As<IControl>().Get();
    std::vector<PersistedProperty> properties;
    properties.reserve(bag.size());
    for (const auto& [key, text] : bag) {
      properties.push_back(
          {key.data(), static_cast<std::uint32_t>(key.size()), static_cast<std::uint32_t>(text.size()), text.data()});
    }
    return container->Load(properties.data(), static_cast<std::uint32_t>(properties.size()));
  }
};

TEST_F(PlayerClassTest, HasNoEvents) {
  Held<IConnectionPoint> point;
  for (const Guid& id : {kVideoServerPushEvents, Guid{}}) {
    EXPECT_EQ(control.As<IConnectionPointContainer>()->FindConnectionPoint(&id, point.PutTyped()),
              CONNECT_E_NOCONNECTION);
  }
}

TEST_F(PlayerClassTest, ReleasedWhileItsStreamConnects) {
  const fakes::ScriptedServer silent([](const std::string&, fakes::ScriptedServer::Connection& to) { to.Never(); });
  EventQueue& queue = server.GetPlatform().loop.Queue();
  queue.ArmTimer(std::chrono::milliseconds(50), [&] { control.Release(); });
  const auto start = queue.Now();
  Load({{"LURL", silent.Url()}, {"Start", "Yes"}});
  EXPECT_LT(queue.Now() - start, std::chrono::seconds(3));
  EXPECT_FALSE(control);
  EXPECT_THAT(silent.Requests(), ElementsAre(HasSubstr("GET /")));
}

}  // namespace
}  // namespace orbelcast::server
