// Server information and relay lookup as bytes on the wire, against a real server.

#include "protocol/server_info.h"

#include <gmock/gmock.h>

#include "adapters/curl/curl_http.h"
#include "adapters/fiber/fiber_loop.h"
#include "adapters/posix/headless_queue.h"
#include "fakes/scripted_server.h"
#include "protocol/relay.h"

namespace orbelcast {
namespace {

using fakes::AnswerBytes;
using fakes::ScriptedServer;
using fakes::TargetOf;
using testing::HasSubstr;
using testing::Not;
using To = ScriptedServer::Connection;

constexpr auto kInfo = "RDXVIEWER\r\nSNM:Gate\r\nCAM:1\tYard\thttp://h/live/1\r\n\r\n";

class ServerInfoTest : public testing::Test {
 protected:
  ServerInfo Query(const std::string& address, const std::string& user = "", const std::string& password = "") {
    return QueryServerInfo(http, configuration, address, user, password, 10000, InfoMode::kCameras);
  }
  static std::string HostOf(const ScriptedServer& server) { return "127.0.0.1:" + std::to_string(server.Port()); }

  HeadlessQueue queue;
  FiberLoop loop{queue};
  CurlHttp http{loop};
  Configuration configuration;
};

TEST_F(ServerInfoTest, TheRequestGoesOutAsItsServersKnowIt) {
  ScriptedServer server(AnswerBytes(200, kInfo));
  const std::string host = HostOf(server);
  Query("HTTP://" + host + "/", "ann", "");
  Query(host + "/site:", "", "p\xff\xfe>?");
  Query(host);
  const auto requests = server.Requests();
  const std::string begin = "GET /secure/srv_vigilbox$rdxviewer HTTP/1.1\r\nHost: " + host + "\r\n";
  EXPECT_TRUE(requests[0].starts_with(begin)) << requests[0];
  EXPECT_THAT(requests[0], HasSubstr("\r\nAuthorization:  Basic YW5uOg==\r\nUser-Agent: HOLMVANE SOFTWARE\r\n"));
  EXPECT_EQ(TargetOf(requests[1]), "/site:/secure/srv_vigilbox$rdxviewer");
  EXPECT_THAT(requests[1], HasSubstr("Authorization:  Basic OnD//j4/\r\n"));
  EXPECT_THAT(requests[2], Not(HasSubstr("uthorization")));
  EXPECT_EQ(server.Connections(), 1);
}

TEST_F(ServerInfoTest, ReadsHeadersAndLinesOfAnAnswerWhoseStatusIs200) {
  constexpr auto kHeaders =
      "Server: Gate/2\r\nDate: Wed\r\nGPS-Lat: 1.5\r\nGPS-Lon: -2\r\nGPS-Alt: 30\r\nRC_QUERY: 2\r\n";
  std::string answer = AnswerBytes(200, kInfo, kHeaders);
  ScriptedServer server([&](const std::string&, To& to) { to.Send(answer); });
  const ServerInfo info = Query(HostOf(server));
  EXPECT_TRUE(info.ViewerMarker);
  EXPECT_EQ(info.ServerHeader + info.DateHeader + info.GpsLat + info.GpsLon + info.GpsAlt, "Gate/2Wed1.5-230");
  EXPECT_EQ(info.DirectFileKey, "getdirectfile2=");

  answer = AnswerBytes(200, "rdxviewer\r\nSNM:x\r\n", "RC_QUERY: 02\r\n");
  const ServerInfo unmarked = Query(HostOf(server));
  EXPECT_FALSE(unmarked.ViewerMarker);
  EXPECT_EQ(unmarked.SystemName + unmarked.DirectFileKey, "xgetdirectfile=");

  answer = AnswerBytes(401, kInfo, kHeaders);
  const ServerInfo refused = Query(HostOf(server), "ann", "wrong");
  EXPECT_EQ(refused.Status, 401);
  EXPECT_EQ(refused.ServerHeader + refused.DirectFileKey + refused.Lines + refused.SystemName, "");
  EXPECT_THAT(refused.AllHeaders, HasSubstr("Gate/2"));
  EXPECT_EQ(server.Requests().size(), 3u);
  for (const char* address : {"127.0.0.1:1", "", "a\r\nb"}) EXPECT_EQ(Query(address).Status, 404) << address;
}

class RelayTest : public ServerInfoTest {
 protected:
  RelayTest() {
    configuration.relay_host = "Relay.example";
    configuration.relay_lookup_host = HostOf(relay);
  }
  std::string Resolve(const std::string& url) { return ResolveRelayUrl(http, configuration, url, 0); }

  std::string answer = AnswerBytes(200, "http://\r\ncam.example:81/\r\n");
  ScriptedServer relay{[this](const std::string&, To& to) { to.Send(answer); }};
};

TEST_F(RelayTest, TheAccountsServerTakesItsPlaceForServerInformationToo) {
  for (const char* url : {"Relay.example", "host/Relay.example/ann", ""}) EXPECT_EQ(Resolve(url), url);
  EXPECT_THAT(relay.Requests(), testing::IsEmpty());
  EXPECT_EQ(Resolve("Relay.example/ann b/Relay.example/ann b"), "cam.example:81/cam.example:81");
  EXPECT_EQ(TargetOf(relay.Requests().front()), "/cgi-bin/relaypost.exe?op=rdxviewer&account=ann b");
  // Looked up in any letter case, replaced in the stored one alone.
  EXPECT_EQ(Resolve("http://relay.example/ann/x"), "http://relay.example/ann/x");
  answer = AnswerBytes(404, "cam.example");
  EXPECT_EQ(Resolve("Relay.example/ann"), "");

  ScriptedServer camera(AnswerBytes(200, kInfo));
  answer = AnswerBytes(200, "http://" + HostOf(camera) + "/\r\n");
  const ServerInfo info = Query("http://relay.example/ann");
  EXPECT_TRUE(info.ViaRelay);
  EXPECT_EQ(info.RelayHost + ":" + info.RelayPort + info.SystemName, HostOf(camera) + "Gate");
  answer = AnswerBytes(200, "host.invalid");
  EXPECT_EQ(Query("relay.example/ann").RelayPort, "1001");
  answer = AnswerBytes(200, "\r\n");
  const ServerInfo none = Query("relay.example/ann");
  EXPECT_EQ(none.Status, 404);
  EXPECT_FALSE(none.ViaRelay);
}

}  // namespace
}  // namespace orbelcast
