#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fakes/scripted_server.h"
#include "player/user_control1.h"
#include "server/host_fixture.h"

namespace orbelcast::server {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr std::int32_t kSystemName = 0x6803002b;
constexpr std::int32_t kShowExtendedFeatures = 0x6803002c;
constexpr std::int32_t kRefreshUrls = 0x60030018;
constexpr std::int32_t kDoResize = 0x60030022;
constexpr std::int32_t kConnect2Server = 0x6003002a;

class PlayerClassTest : public HostTest {
 protected:
  PlayerClassTest() : HostTest("UserControl1") {}

  UserControl1& Player() { return *control.As<IControlAccess>()->Player(); }
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

TEST_F(PlayerClassTest, EveryMemberAnswersUnderItsNameAndItsId) {
  const auto members = control.As<IMemberList>();
  std::vector<std::pair<std::string, std::int32_t>> found;
  for (std::uint32_t i = 0; i < members->GetCount(); ++i) {
    const MemberInfo* member = nullptr;
    ASSERT_EQ(members->GetMember(i, &member), S_OK);
    std::int32_t id = 0;
    EXPECT_EQ(control->GetIDsOfNames(&member->name, 1, &id), S_OK);
    EXPECT_EQ(id, member->id);
    found.emplace_back(member->name, id);
    const bool property = member->kind == kPropertyMember;
    // A wrong number of arguments: known, and yet nothing is done.
    EXPECT_EQ(Invoke(id, property ? kPropertyGet : kMethod, std::vector<Variant>(4, MakeText("x"))),
              DISP_E_BADPARAMCOUNT);
  }
  using Entry = std::pair<std::string, std::int32_t>;
  EXPECT_THAT(found, testing::UnorderedElementsAre(Entry("AviStart", 0x60030008), Entry("StopAvi", 0x60030011),
                                                   Entry("RefreshURLs", 0x60030018), Entry("DoResize", 0x60030022),
                                                   Entry("Connect2Server", 0x6003002a), Entry("SystemName", 0x6803002b),
                                                   Entry("ShowExtendedFeatures", 0x6803002c),
                                                   Entry("SetMultiCams", 0x60030037)));
  Held<IConnectionPoint> point;
  EXPECT_EQ(control.As<IConnectionPointContainer>()->FindConnectionPoint(&kVideoServerPushEvents, point.PutTyped()),
            CONNECT_E_NOCONNECTION);
  const Guid none{};
  EXPECT_EQ(control.As<IConnectionPointContainer>()->FindConnectionPoint(&none, point.PutTyped()),
            CONNECT_E_NOCONNECTION);
}

TEST_F(PlayerClassTest, PropertiesAndTextsByReference) {
  EXPECT_EQ(Get(kShowExtendedFeatures), "0");
  EXPECT_EQ(Put(kShowExtendedFeatures, MakeBoolean(true)), S_OK);
  EXPECT_EQ(Get(kShowExtendedFeatures), "-1");
  EXPECT_TRUE(Player().Player[11].Visible);
  EXPECT_EQ(Put(kSystemName, MakeText("x")), DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(Get(kSystemName), "");

  Variant live = MakeText("ftp://nothing");
  Variant archive = MakeText("ftp://archive");
  EXPECT_EQ(Invoke(kRefreshUrls, kMethod, {MakeReference(live), MakeReference(archive)}), S_OK);
  EXPECT_EQ(std::string(live.text, live.size), "ftp://nothing");
  EXPECT_EQ(Invoke(kRefreshUrls, kMethod, {MakeText("http://x")}), DISP_E_PARAMNOTOPTIONAL);
  Variant automatic = MakeBoolean(true);
  EXPECT_EQ(Invoke(kDoResize, kMethod, {MakeReference(automatic)}), S_OK);
  EXPECT_EQ(control.As<IControl>()->Place(9000, 9000), S_OK);
  EXPECT_TRUE(Player().PlayerControls.Visible);
}

TEST_F(PlayerClassTest, TheServersCamerasByMethodAndByPropertyBag) {
  const std::string text = "RDXVIEWER\r\nSNM:House\r\nCAM:d1\tDoor\tftp://1\r\nCAM:D2\tYard\tftp://2\r\n\r\n";
  const fakes::ScriptedServer cameras("HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(text.size()) + "\r\n\r\n" +
                                      text);
  const std::string port = std::to_string(cameras.Port());
  const std::string name = "127.0.0.1:" + port;
  EXPECT_EQ(Invoke(kConnect2Server, kMethod, {MakeText(name), MakeText("user"), MakeText("password")}), S_OK);
  EXPECT_EQ(Get(kSystemName), "House");
  EXPECT_THAT(Player().CamList.List(), ElementsAre("Door", "Yard"));

  control = Create("UserControl1");
  EXPECT_EQ(control.As<IControl>()->Place(9000, 9000), S_OK);
  EXPECT_EQ(Load({{"Server", "127.0.0.1"}, {"Port", port}, {"Device", "d2"}, {"ExtendedControls", "Yes"}}), S_OK);
  EXPECT_EQ(Player().CamList.ListIndex(), 1);
  EXPECT_EQ(Get(kShowExtendedFeatures), "-1");
  EXPECT_EQ(control.As<IControl>()->Hide(), S_OK);
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
