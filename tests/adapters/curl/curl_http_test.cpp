#include "adapters/curl/curl_http.h"

#include <dlfcn.h>
#include <gmock/gmock.h>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "adapters/fiber/fiber_loop.h"
#include "adapters/posix/headless_queue.h"
#include "fakes/scripted_server.h"

namespace orbelcast {
namespace {

using fakes::AnswerBytes;
using fakes::ScriptedServer;
using fakes::TargetOf;
using std::chrono::milliseconds;
using std::chrono::seconds;
using testing::AllOf;
using testing::Each;
using testing::HasSubstr;
using testing::Not;
using testing::SizeIs;
using To = ScriptedServer::Connection;

constexpr milliseconds kSlowLookup{300};

class CurlHttpTest : public testing::Test {
 protected:
  /// One whole exchange, as the frame loop makes them. The status, 0 where there is none.
  int Get(HttpRequest& on, const std::string& url, bool async = true) {
    if (!on.Open("GET", url, async)) return 0;
    if (on.Send()) on.WaitForResponse();
    return on.Status();
  }
  int GetAs(HttpRequest& on, const std::string& url, std::string_view user, std::string_view password) {
    if (!on.Open("GET", url, true) || !on.SetCredentials(user, password, 0) || !on.Send()) return 0;
    on.WaitForResponse();
    return on.Status();
  }
  milliseconds Since(EventQueue::Nanoseconds begin) const {
    return std::chrono::duration_cast<milliseconds>(queue.Now() - begin);
  }

  HeadlessQueue queue;
  FiberLoop loop{queue};
  std::optional<CurlHttp> http{loop};
  std::shared_ptr<HttpRequest> request = http->Create();
};

TEST_F(CurlHttpTest, AnAnswerIsReadAsTheControlsReadIt) {
  ScriptedServer frames(
      AnswerBytes(200, std::string_view("\xff\xd8\0\xd9", 4),
                  "RC_TCR:\t 20240131120000 \r\nserver: first\nServer: second\r\nEmpty:\r\n: odd\r\n"));
  for (const bool async : {true, false}) {
    EXPECT_EQ(Get(*request, frames.Url("/frame"), async), 200);
    EXPECT_EQ(request->GetResponseHeader("rc_tcr"), "20240131120000");
    EXPECT_EQ(request->GetResponseHeader("SERVER"), "first");
    EXPECT_EQ(request->GetAllResponseHeaders(),
              "HTTP/1.1 200 Text\r\nRC_TCR:\t 20240131120000 \r\nserver: first\r\nServer: second\r\nEmpty:\r\n: odd\r\n"
              "Content-Length: 4\r\n");
    EXPECT_EQ(request->ResponseText(), std::string("\xff\xd8\0\xd9", 4));
  }
}

TEST_F(CurlHttpTest, TheTargetGoesOutByteForByte) {
  ScriptedServer server(AnswerBytes(200));
  std::string printable;
  for (char each = ' '; each < 0x7f; ++each) printable += each;
  const std::vector<std::string> targets = {
      "/a b?x=1?y=%20", "/plain/../$live/./x//y", "/%2F%2f%zz%",    "/a#b?c#d",         "/a?#", "/?",        "//",
      "/\xc3\xa4\xff",  "/" + printable,          "/?" + printable, "/[1]{2}|^`\"<>\\", "/ x ", "/a?b c%2F",
  };
  for (const std::string& target : targets) EXPECT_EQ(Get(*request, server.Url(target)), 200) << target;
  for (const char* rest : {"?x=1 2", "#x", ""}) EXPECT_EQ(Get(*request, server.Url(rest)), 200);
  std::vector<std::string> expected = targets;
  for (const char* rest : {"/?x=1 2", "/#x", "/"}) expected.emplace_back(rest);
  std::vector<std::string> seen;
  for (const std::string& each : server.Requests()) seen.push_back(TargetOf(each));
  EXPECT_EQ(seen, expected);
  EXPECT_EQ(server.Connections(), 1);
}

TEST_F(CurlHttpTest, EachOfManyRequestObjectsKeepsItsConnection) {
  ScriptedServer server(AnswerBytes(200));
  std::vector<std::shared_ptr<HttpRequest>> requests(80);
  for (auto& each : requests) each = http->Create();
  for (int round = 0; round < 3; ++round) {
    for (const auto& each : requests) EXPECT_TRUE(each->Open("GET", server.Url(), true) && each->Send());
    for (const auto& each : requests) EXPECT_TRUE(each->WaitForResponse());
  }
  EXPECT_LE(server.Connections(), 80);
}

TEST_F(CurlHttpTest, HeadersGoOutAsGivenAndNothingElseIsAsked) {
  ScriptedServer server(AnswerBytes(200));
  setenv("http_proxy", "http://127.0.0.1:1/", 1);
  ASSERT_TRUE(request->Open("GET", server.Url("/x"), false));
  EXPECT_TRUE(request->SetRequestHeader("Authorization", " Basic dXNlcg=="));
  EXPECT_TRUE(request->SetRequestHeader("User-Agent", "an older one"));
  EXPECT_TRUE(request->SetRequestHeader("USER-AGENT", "Some Software"));
  EXPECT_TRUE(request->SetRequestHeader("X-Empty", ""));
  EXPECT_TRUE(request->Send());
  EXPECT_EQ(Get(*request, server.Url("/x"), false), 200);
  unsetenv("http_proxy");
  const auto seen = server.Requests();
  ASSERT_THAT(seen, SizeIs(2));
  EXPECT_THAT(seen[0],
              AllOf(HasSubstr("\r\nAuthorization:  Basic dXNlcg==\r\n"), HasSubstr("\r\nUser-Agent: Some Software\r\n"),
                    Not(HasSubstr("older")), HasSubstr("\r\nX-Empty:\r\n")));
  EXPECT_EQ(seen[1], "GET /x HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(server.Port()) + "\r\nAccept: */*\r\n\r\n");
}

TEST_F(CurlHttpTest, NothingTypedCanAddALineOrLeadToNoServer) {
  ScriptedServer server(AnswerBytes(200));
  for (int code = 0; code < 0x80; code = code == 0x1f ? 0x7f : code + 1) {
    const std::string bad = std::string("a") + static_cast<char>(code) + "b";
    EXPECT_FALSE(request->Open("GET", server.Url("/" + bad), true));
    EXPECT_FALSE(request->Send());
    EXPECT_FALSE(request->Open(bad, server.Url("/"), true));
    ASSERT_TRUE(request->Open("GET", server.Url("/good"), true));
    EXPECT_FALSE(request->SetRequestHeader("X-Name", bad));
    EXPECT_FALSE(request->SetRequestHeader(bad, "value"));
    EXPECT_FALSE(request->SetCredentials(bad, "password", 0));
    EXPECT_FALSE(request->SetCredentials("user", bad, 0));
    EXPECT_TRUE(request->Send());
    request->WaitForResponse();
  }
  EXPECT_FALSE(request->SetRequestHeader("Two: Names", "value"));
  for (const std::string& each : server.Requests()) EXPECT_EQ(TargetOf(each), "/good");
  for (const char* url : {"", "http:///x", "file:///etc/passwd", "127.0.0.1/", "http://a b/", "http://127.0.0.1:x/"}) {
    EXPECT_EQ(Get(*request, url), 0) << url;
    EXPECT_EQ(request->Failure(), HttpFailure::kUnreachable);
  }
}

TEST_F(CurlHttpTest, CredentialsCostOneRoundTripOnce) {
  const std::vector<std::string> challenges = {
      "WWW-Authenticate: Basic realm=\"cameras\"\r\n",
      "WWW-Authenticate: Digest realm=\"cameras\", nonce=\"abc\", qop=\"auth\", algorithm=MD5\r\n",
      "WWW-Authenticate: Basic realm=\"c\"\r\nWWW-Authenticate: Digest realm=\"c\", nonce=\"abc\"\r\n"};
  for (std::size_t i = 0; i < challenges.size(); ++i) {
    const std::string scheme = i == 0 ? "Authorization: Basic dXNlcjpwYXNz" : "Authorization: Digest username=\"user\"";
    ScriptedServer server([&](const std::string& received, To& to) {
      if (received.find(scheme) == std::string::npos) {
        to.Send(AnswerBytes(401, "not the frame", challenges[i] + "X-Round: first\r\n"));
      } else {
        to.Send(AnswerBytes(200, "frame"));
      }
    });
    const auto fresh = http->Create();
    const std::vector<std::string> targets = {"/live", "/a?b?c=%2F", "/a?b c%2F", "/a#b?c#d"};
    for (std::size_t frame = 0; frame < targets.size(); ++frame) {
      EXPECT_EQ(GetAs(*fresh, server.Url(targets[frame]), "user", "pass"), 200);
      EXPECT_EQ(fresh->ResponseText(), "frame");
      EXPECT_EQ(fresh->GetResponseHeader("X-Round"), "");
      const std::string uri = i > 0 ? "uri=\"" + targets[frame] + "\"" : "";
      const std::string count = i == 1 ? "nc=0000000" + std::to_string(frame + 1) : "";
      EXPECT_THAT(server.Requests().back(), AllOf(HasSubstr(uri), HasSubstr(count)));
    }
    EXPECT_THAT(server.Requests(), SizeIs(5)) << challenges[i];
    EXPECT_EQ(server.Connections(), 1);
    EXPECT_THAT(server.Requests()[0], Not(HasSubstr("Authorization")));
    // Without them, and with others, the server is asked anew.
    EXPECT_EQ(Get(*fresh, server.Url("/live")), 401);
    EXPECT_EQ(fresh->ResponseText(), "not the frame");
    EXPECT_THAT(server.Requests().back(), Not(HasSubstr("Authorization")));
  }
}

TEST_F(CurlHttpTest, ALoginIsAnsweredAgainOnlyWhereThatMayHelp) {
  using Requests = std::pair<std::size_t, std::size_t>;  // of the first exchange, and of one more
  const std::pair<std::string, Requests> cases[] = {
      {"Basic realm=\"c\"", {2, 1}},
      {"Digest realm=\"c\", nonce=\"a\"", {2, 2}},  // a remembered nonce may be too old
      {"Digest realm=\"c\", nonce=\"a\", stale=true", {3, 3}},
      {"Digest realm=\"c\", nonce=\"a\", algorithm=SHA-512-256", {1, 1}},
      {"Negotiate", {1, 1}},
  };
  for (const auto& [challenge, count] : cases) {
    ScriptedServer server(AnswerBytes(401, "", "WWW-Authenticate: " + challenge + "\r\n"));
    EXPECT_EQ(GetAs(*request, server.Url(), "user", "wrong"), 401);
    EXPECT_THAT(server.Requests(), SizeIs(count.first)) << challenge;
    EXPECT_EQ(GetAs(*request, server.Url(), "user", "wrong"), 401);
    EXPECT_THAT(server.Requests(), SizeIs(count.first + count.second)) << challenge;
  }
}

TEST_F(CurlHttpTest, AFrameThatIsKeptIsNotWrittenOverByOthers) {
  ScriptedServer server([](const std::string& received, To& to) { to.Send(AnswerBytes(200, TargetOf(received))); });
  std::vector<FrameBytes> frames;
  for (int i = 0; i < 9; ++i) {
    EXPECT_EQ(Get(*request, server.Url("/" + std::to_string(i))), 200);
    frames.push_back(request->ResponseBody());
    if (i > 5) frames[5] = FrameBytes();  // its buffer may be used again
  }
  for (const std::size_t i : {0u, 4u, 8u}) EXPECT_EQ(frames[i].Bytes()[1], '0' + i);
}

TEST_F(CurlHttpTest, WhatIsNoCompleteAnswerFails) {
  const std::string head = "HTTP/1.1 200 OK\r\n";
  const std::pair<std::string, bool> faults[] = {
      // what is sent, and whether again and again
      {"no HTTP at all\r\n\r\n", false},
      {head + "Content-Length: 10\r\n\r\nhalf", false},
      {head + "Content-Length: 67108865\r\n\r\n", false},
      {AnswerBytes(200, "frame", "Transfer-Encoding: chunked, gzip\r\n"), false},
      {head + "\r\n" + std::string(1 << 20, 'x'), true},
      {"HTTP/1.1 100 Continue\r\n\r\n", true},
  };
  for (const auto& [bytes, for_ever] : faults) {
    ScriptedServer server([&bytes = bytes, for_ever = for_ever](const std::string&, To& to) {
      while (to.Send(bytes) && for_ever) {
      }
      to.Close();
    });
    for (const bool async : {true, false}) {
      EXPECT_EQ(Get(*request, server.Url(), async), 0) << bytes.substr(0, 80);
      EXPECT_EQ(request->Failure(), HttpFailure::kCutShort) << bytes.substr(0, 80);
      EXPECT_TRUE(request->ResponseBody().Empty());
      EXPECT_EQ(request->GetAllResponseHeaders(), "");
    }
  }
  EXPECT_EQ(Get(*request, "http://127.0.0.1:1/"), 0);  // nobody listens there
  EXPECT_EQ(request->Failure(), HttpFailure::kUnreachable);
}

TEST_F(CurlHttpTest, LimitsBoundTheWholeAnswerAndTheWholeExchange) {
  ScriptedServer server([](const std::string& received, To& to) {
    if (TargetOf(received) == "/never") to.Never();
    to.Pause(milliseconds(60));
    if (TargetOf(received) == "/late") return static_cast<void>(to.Send(AnswerBytes(200)));
    to.Send("HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\n");
    while (to.Send("x") && to.Pause(milliseconds(10))) {
    }
  });
  EXPECT_FALSE(request->SetTimeouts(-1, 0, 0, 0));
  for (const int receive : {100, 0}) {
    EXPECT_TRUE(request->SetTimeouts(1000, 1000, 1000, receive));
    for (const char* target : {"/never", "/drop by drop"}) {
      for (const bool async : {true, false}) {
        const auto begin = queue.Now();
        ASSERT_TRUE(request->Open("GET", server.Url(target), async));
        EXPECT_FALSE(request->LimitExchange(milliseconds(0)));
        if (receive == 0) request->LimitExchange(milliseconds(100));
        request->Send();
        EXPECT_FALSE(request->WaitForResponse());
        EXPECT_EQ(request->Failure(), HttpFailure::kTimedOut);
        EXPECT_THAT(Since(begin), AllOf(testing::Ge(milliseconds(100)), testing::Lt(milliseconds(1000))));
      }
    }
  }
  ASSERT_TRUE(request->Open("GET", server.Url("/late")) && request->LimitExchange(milliseconds(10)));
  EXPECT_EQ(Get(*request, server.Url("/late"), false), 200);  // the limit was forgotten
  EXPECT_EQ(request->Failure(), HttpFailure::kNone);
}

TEST_F(CurlHttpTest, ResolvingAndConnectingHaveALimitEach) {
  // A listener whose queue is full answers no more.
  const int listener = socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t length = sizeof address;
  ASSERT_EQ(bind(listener, reinterpret_cast<sockaddr*>(&address), length), 0);
  ASSERT_EQ(listen(listener, 0), 0);
  getsockname(listener, reinterpret_cast<sockaddr*>(&address), &length);
  std::vector<int> fillers;
  for (int i = 0; i < 4; ++i) {
    fillers.push_back(socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0));
    // In progress at once: it is the listener's queue that these fill.
    static_cast<void>(connect(fillers.back(), reinterpret_cast<sockaddr*>(&address), length));
  }
  const std::string port = ":" + std::to_string(ntohs(address.sin_port)) + "/";
  const auto failed_after = [&](const std::string& host, int resolve, int connect) {
    request->SetTimeouts(resolve, connect, 0, 60'000);
    const auto begin = queue.Now();
    EXPECT_EQ(Get(*request, "http://" + host + port), 0);
    return Since(begin);
  };
  EXPECT_THAT(failed_after("127.0.0.1", 5000, 100), AllOf(testing::Ge(milliseconds(100)), testing::Lt(seconds(2))));
  EXPECT_THAT(failed_after("one.slow.test", 50, 0), testing::Lt(kSlowLookup));
  EXPECT_THAT(failed_after("two.slow.test", 5000, 100),
              AllOf(testing::Ge(kSlowLookup + milliseconds(100)), testing::Lt(seconds(2))));
  for (const int each : fillers) close(each);
  close(listener);
}

TEST_F(CurlHttpTest, AWaitEndsWithTheExchangeThatItBeganWith) {
  ScriptedServer server([](const std::string& received, To& to) {
    if (TargetOf(received) == "/never") to.Never();
    to.Send(AnswerBytes(200, TargetOf(received)));
  });
  EXPECT_FALSE(request->WaitForResponse());  // nothing is under way
  // Ends of an exchange under way, and the outcome of the one that is sent at once after each; none: it is refused.
  using End = std::function<void()>;
  const std::vector<std::pair<std::optional<bool>, End>> ends = {
      {true, [&] { EXPECT_TRUE(request->Open("GET", server.Url("/new"), true)); }},
      {false, [&] { request->Abort(), request->Abort(); }},
      {false, [&] { EXPECT_FALSE(request->WaitForResponse(milliseconds(5))); }},
      {{}, [&] { EXPECT_FALSE(request->Open("GET", "http://bad host/", true)); }},
      {{}, [&] { request.reset(); }},
      {{}, [&] { http.reset(); }},
  };
  for (const auto& [next, end] : ends) {
    if (!request) request = http->Create();
    int woken = 0;
    ASSERT_TRUE(request->Open("GET", server.Url("/never"), true) && request->Send());
    EXPECT_FALSE(request->Send());
    // Reading changes nothing.
    EXPECT_EQ(request->Status(), 0);
    EXPECT_TRUE(request->ResponseBody().Empty());
    for (int i = 0; i < 2; ++i) {
      loop.RunHandler([&, raw = request.get()] {
        EXPECT_FALSE(raw->WaitForResponse());
        ++woken;
      });
    }
    end();
    EXPECT_EQ(request && request->Send(), next.has_value());
    if (next) {
      EXPECT_EQ(request->WaitForResponse(milliseconds(*next ? 5000 : 5)), *next);
    }
    while (woken < 2) queue.HandleNext();
    EXPECT_EQ(loop.Handlers(), 0u);
  }
}

TEST_F(CurlHttpTest, RedirectsAreFollowedTenTimesAndOnlyToServers) {
  ScriptedServer server([&server](const std::string& received, To& to) {
    const std::string target = TargetOf(received);
    if (target.starts_with("/there")) return static_cast<void>(to.Send(AnswerBytes(200, target)));
    const int left = std::stoi(target.substr(target.find('=') + 1));
    const std::string host = "//127.0.0.1:" + std::to_string(server.Port());
    const std::string next = left < 0    ? "file:///etc/passwd"
                             : left == 0 ? "./there is?it=#not this"
                                         : host + "/to?n=" + std::to_string(left - 1);
    to.Send(AnswerBytes(302, "moved", "X-Old: 1\r\nLocation: " + next + "\r\n"));
  });
  for (const std::string path : {"/to?n=", "/odd path?n="}) {
    for (const int left : {0, 9}) {
      EXPECT_EQ(Get(*request, server.Url(path + std::to_string(left))), 200) << path << left;
      EXPECT_EQ(request->ResponseText(), "/there%20is?it=");
      EXPECT_EQ(request->GetResponseHeader("X-Old"), "");
    }
    EXPECT_EQ(Get(*request, server.Url(path + "10")), 0);
    EXPECT_EQ(Get(*request, server.Url(path + "-1")), 0);
  }
}

TEST_F(CurlHttpTest, CredentialsStayWithTheServerThatWasAsked) {
  ScriptedServer other([](const std::string&, To& to) {
    to.Send(AnswerBytes(401, "", "WWW-Authenticate: Basic realm=\"phishing\"\r\n"));
  });
  ScriptedServer server([&](const std::string& received, To& to) {
    const bool proven = received.find("\r\nAuthorization:") != std::string::npos;
    to.Send(AnswerBytes(proven ? 302 : 401, "",
                        "Location: http://localhost:" + std::to_string(other.Port()) + "/\r\n" +
                            "WWW-Authenticate: Basic realm=\"cameras\"\r\n"));
  });
  for (const char* target : {"/plain", "/odd target"}) {
    EXPECT_EQ(GetAs(*request, server.Url(target), "user", "pass"), 401);
    ASSERT_TRUE(request->Open("GET", server.Url(target), false));
    EXPECT_TRUE(request->SetRequestHeader("Authorization", " Basic dXNlcg=="));
    EXPECT_TRUE(request->Send());
    EXPECT_EQ(request->Status(), 401);
  }
  EXPECT_THAT(other.Requests(), SizeIs(testing::Ge(4)));
  EXPECT_THAT(other.Requests(), Each(Not(HasSubstr("Authorization"))));
}

}  // namespace
}  // namespace orbelcast

// In the place of the system's, which libcurl calls on threads of its own: a name that ends in ".slow.test" takes a
// while.
extern "C" int getaddrinfo(const char* name, const char* service, const addrinfo* hints, addrinfo** found) {
  static auto* const system_lookup = reinterpret_cast<decltype(&getaddrinfo)>(dlsym(RTLD_NEXT, "getaddrinfo"));
  const bool slow = name != nullptr && std::string_view(name).ends_with(".slow.test");
  if (slow) std::this_thread::sleep_for(orbelcast::kSlowLookup);
  return system_lookup(slow ? "127.0.0.1" : name, service, hints, found);
}
