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
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using To = ScriptedServer::Connection;

constexpr auto kInfo = "RDXVIEWER\r\nSNM:Gate\r\nCAM:1\tYard\thttp://h/live/1\r\n\r\n";

class ServerInfoTest : public testing::Test {
 protected:
  ServerInfo Query(const std::string& address, const std::string& user = "", const std::string& password = "",
                   std::int32_t time_out = 10000) {
    return QueryServerInfo(http, configuration, address, user, password, time_out, InfoMode::kCameras);
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
  Query(host, "ann", "");
  const std::string request = server.Requests().front();
  EXPECT_TRUE(request.starts_with("GET /secure/srv_vigilbox$rdxviewer HTTP/1.1\r\nHost: " + host + "\r\n")) << request;
  EXPECT_THAT(request, HasSubstr("\r\nAuthorization:  Basic YW5uOg==\r\nUser-Agent: HOLMVANE SOFTWARE\r\n")) << request;
  for (const std::string& address : {host, "HTTP://" + host, host + "/", "http://" + host + "/"}) Query(address);
  Query(host + "/site:");
  const auto requests = server.Requests();
  for (std::size_t i = 1; i < 5; ++i) {
    EXPECT_EQ(TargetOf(requests[i]), "/secure/srv_vigilbox$rdxviewer");
    EXPECT_THAT(requests[i], Not(HasSubstr("uthorization")));
  }
  EXPECT_EQ(TargetOf(requests[5]), "/site:/secure/srv_vigilbox$rdxviewer");
  Query(host, "", "pw");
  EXPECT_THAT(server.Requests().back(), HasSubstr("Authorization:  Basic OnB3\r\n"));
  EXPECT_EQ(server.Connections(), 1);
}

TEST_F(ServerInfoTest, ReadsHeadersAndLines) {
  const std::string headers =
      "Server: Gate/2\r\nDate: Wed\r\nGPS-Lat: 1.5\r\nGPS-Lon: -2\r\nGPS-Alt: 30\r\nRC_QUERY: 2\r\n";
  ScriptedServer server(AnswerBytes(200, kInfo, headers));
  const ServerInfo info = Query(HostOf(server));
  EXPECT_EQ(info.Status, 200);
  EXPECT_TRUE(info.ViewerMarker);
  EXPECT_FALSE(info.ViaRelay);
  EXPECT_EQ(info.ServerHeader + info.DateHeader + info.GpsLat + info.GpsLon + info.GpsAlt, "Gate/2Wed1.5-230");
  EXPECT_EQ(info.DirectFileKey, "getdirectfile2=");
  EXPECT_THAT(info.AllHeaders, HasSubstr("GPS-Lat: 1.5\r\n"));
  EXPECT_EQ(info.SystemName, "Gate");
  EXPECT_EQ(info.Lines, "1\tYard\thttp://h/live/1\r\n");

  ScriptedServer other(AnswerBytes(200, "rdxviewer\r\nSNM:x\r\n", "RC_QUERY: 02\r\n"));
  const ServerInfo unmarked = Query(HostOf(other));
  EXPECT_FALSE(unmarked.ViewerMarker);
  EXPECT_EQ(unmarked.SystemName, "x");
  EXPECT_EQ(unmarked.DirectFileKey, "getdirectfile=");
}

TEST_F(ServerInfoTest, AnotherStatusFillsNoFieldButTheHeadersWhole) {
  ScriptedServer server(AnswerBytes(401, kInfo, "Server: Gate/2\r\nWWW-Authenticate: Basic realm=\"x\"\r\n"));
  const ServerInfo info = Query(HostOf(server), "ann", "wrong");
  EXPECT_EQ(info.Status, 401);
  EXPECT_FALSE(info.ViewerMarker);
  EXPECT_EQ(info.ServerHeader + info.DirectFileKey + info.Lines + info.SystemName, "");
  EXPECT_THAT(info.AllHeaders, HasSubstr("Gate/2"));
  EXPECT_EQ(server.Requests().size(), 1u);
}

TEST_F(ServerInfoTest, NoAnswerIsStatus404) {
  int closed_port = 0;
  {
    ScriptedServer gone(AnswerBytes(200));
    closed_port = gone.Port();
  }
  for (const std::string& address : {"127.0.0.1:" + std::to_string(closed_port), std::string("no such host"),
                                     std::string(), std::string("a\r\nb")}) {
    const ServerInfo info = Query(address);
    EXPECT_EQ(info.Status, 404) << address;
    EXPECT_FALSE(info.ViewerMarker);
  }
  ScriptedServer server(AnswerBytes(200, kInfo));
  // A step that failed on the way ends it, also where the answer came: there are no negative limits.
  EXPECT_EQ(Query(HostOf(server), "", "", -1).Status, 200);
  EXPECT_EQ(Query(HostOf(server), "", "", -1).SystemName, "");
}

class RelayTest : public ServerInfoTest {
 protected:
  RelayTest() {
    configuration.relay_host = "Relay.example";
    configuration.relay_lookup_host = HostOf(relay);
  }
  std::string Resolve(const std::string& url) { return ResolveRelayUrl(http, configuration, url, 0); }
  std::string Lookup(const std::string& url) { return LookupRelayAddress(http, configuration, url, 0); }

  std::string answer = AnswerBytes(200, "http://\r\ncam.example:81/\r\n");
  ScriptedServer relay{[this](const std::string&, To& to) { to.Send(answer); }};
};

TEST_F(RelayTest, OrdinaryAddressesPassWithoutARequest) {
  for (const char* url : {"http://host/$openlogin/u/p/x", "Relay.example", "host/Relay.example/ann", ""}) {
    EXPECT_EQ(Resolve(url), url);
    EXPECT_EQ(Lookup(url), url);
  }
  EXPECT_THAT(relay.Requests(), IsEmpty());
}

TEST_F(RelayTest, TheAccountsServerTakesItsPlace) {
  EXPECT_EQ(Lookup("HTTP://relay.EXAMPLE/ann b/$x"), "http://cam.example:81/");
  EXPECT_EQ(Resolve("http://Relay.example/ann/$openlogin/u/p"), "http://cam.example:81/$openlogin/u/p");
  EXPECT_EQ(Resolve("Relay.example/ann"), "cam.example:81");
  EXPECT_EQ(Resolve("Relay.example/ann/Relay.example/ann"), "cam.example:81/cam.example:81");
  // Looked up in any letter case, replaced in the stored one alone.
  EXPECT_EQ(Resolve("http://relay.example/ann/x"), "http://relay.example/ann/x");
  std::vector<std::string> targets;
  for (const std::string& request : relay.Requests()) targets.push_back(TargetOf(request));
  const std::string ann = "/cgi-bin/relaypost.exe?op=rdxviewer&account=ann";
  EXPECT_THAT(targets, ElementsAre(ann + " b", ann, ann, ann, ann));
  answer = AnswerBytes(404, "cam.example");
  EXPECT_EQ(Lookup("Relay.example/ann"), "");
  EXPECT_EQ(Resolve("Relay.example/ann"), "");
}

TEST_F(RelayTest, ServerInformationGoesByIt) {
  ScriptedServer camera(AnswerBytes(200, kInfo));
  answer = AnswerBytes(200, "http://" + HostOf(camera) + "/\r\n");
  const ServerInfo info = Query("http://relay.example/ann");
  EXPECT_EQ(info.Status, 200);
  EXPECT_TRUE(info.ViaRelay);
  EXPECT_EQ(info.RelayAnswer, "http://" + HostOf(camera) + "/");
  EXPECT_EQ(info.RelayHost, "127.0.0.1");
  EXPECT_EQ(info.RelayPort, std::to_string(camera.Port()));
  EXPECT_EQ(info.SystemName, "Gate");

  answer = AnswerBytes(200, "host.invalid");
  EXPECT_EQ(Query("relay.example/ann").RelayPort, "1001");
  EXPECT_EQ(Query("relay.example/ann").RelayHost, "host.invalid");
  for (const std::string& empty : {AnswerBytes(200, "\r\n"), AnswerBytes(500, "x")}) {
    answer = empty;
    const ServerInfo none = Query("relay.example/ann");
    EXPECT_EQ(none.Status, 404);
    EXPECT_FALSE(none.ViaRelay);
    EXPECT_EQ(none.RelayPort, "");
  }
  EXPECT_EQ(camera.Requests().size(), 1u);
}

}  // namespace
}  // namespace orbelcast
