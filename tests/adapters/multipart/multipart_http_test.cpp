#include "adapters/multipart/multipart_http.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>

#include "adapters/curl/curl_http.h"
#include "adapters/fiber/fiber_loop.h"
#include "adapters/posix/headless_queue.h"
#include "fakes/run_loop.h"
#include "fakes/scripted_server.h"

namespace orbelcast {
namespace {

using fakes::AnswerBytes;
using fakes::RunLoop;
using std::chrono::milliseconds;
using To = fakes::ScriptedServer::Connection;

constexpr milliseconds kIdle{200};
constexpr milliseconds kMoment{60};
constexpr milliseconds kLong{2000};
constexpr int kMany = 40;

std::string Part(const std::string& text) {
  return "RC_TCR: " + text.substr(0, 1) + "\r\n\r\n" + text + "\r\n--b\r\n";
}

class MultipartHttpTest : public testing::Test {
 protected:
  /// A stream is as its address says, a letter a step: a digit is a part, "-" a moment's pause, "c" and "r" close and
  /// reset the connection, "h" is half a part, "x" a header without end, "m" many numbered parts at once.
  void Serve(const std::string& asked, To& to) {
    const std::string target = fakes::TargetOf(asked);
    if (target == "/plain") return static_cast<void>(to.Send(AnswerBytes(200, "plain")));
    if (target.find('?') != std::string::npos && asked.find("Authorization: Basic") == std::string::npos) {
      return static_cast<void>(to.Send(AnswerBytes(401, "no", "WWW-Authenticate: Basic realm=\"c\"\r\n")));
    }
    ++open;
    to.Send(
        "HTTP/1.1 200 OK\r\nServer: it\r\nrc_tcr: 0\r\nContent-Type: "
        "multipart/x-mixed-replace;boundary=b\r\n\r\n--b\r\n");
    for (const char step : target.substr(1)) {
      if (step == '-') to.Pause(kMoment);
      if (step == 'c') return to.Close();
      if (step == 'r') return to.Reset();
      if (step == 'h') to.Send("\r\nhalf a pa");
      if (step == 'x') to.Send(std::string(2 * http_limits::kMaxHeaderBytes, 'x'));
      if (step >= '0' && step <= '9') to.Send(Part({step}));
      for (int i = 1; step == 'm' && i <= kMany; ++i) to.Send(Part(std::to_string(i) + std::string(1000, ' ')));
    }
    to.Never();
    --open;
  }
  /// One exchange as the frame loop makes them; the answer's text, or the failure.
  std::string Get(const std::string& target, const std::string& password = {}, bool async = true) {
    EXPECT_TRUE(request->Open("GET", server.Url(target), async));
    EXPECT_TRUE(password.empty() || request->SetCredentials("ann", password, 0));
    const bool answered = request->Send() && request->WaitForResponse();
    EXPECT_EQ(answered, request->Status() != 0);
    EXPECT_EQ(answered, request->Failure() == HttpFailure::kNone);
    return answered ? request->ResponseText() : Failed(request->Failure());
  }
  static std::string Failed(HttpFailure failure) { return "failure " + std::to_string(static_cast<int>(failure)); }
  bool Comes(const std::function<bool()>& state) { return RunLoop(queue, kLong, state); }

  std::atomic<int> open = 0;
  fakes::ScriptedServer server{[this](const std::string& asked, To& to) { Serve(asked, to); }};
  HeadlessQueue queue;
  FiberLoop loop{queue};
  std::optional<CurlHttp> curl{loop};
  MultipartHttp http{loop, *curl, kIdle};
  std::shared_ptr<HttpRequest> request = http.Create();
};

TEST_F(MultipartHttpTest, EachRequestGetsTheNewestPartOnce) {
  const std::string stream = "/1-23----4";
  EXPECT_EQ(Get(stream), "1");
  EXPECT_EQ(request->GetAllResponseHeaders().find("HTTP/1.1 200 OK\r\nRC_TCR: 1\r\nServer: it\r\n"), 0u);
  EXPECT_EQ(request->GetResponseHeader("rc_tcr"), "1");
  RunLoop(queue, 2 * kMoment);
  EXPECT_EQ(request->ResponseText(), "1");
  EXPECT_EQ(Get(stream), "3");
  EXPECT_EQ(Get(stream), "4");
  EXPECT_EQ(server.Requests().size(), 1u);
  const auto first = std::exchange(request, http.Create());
  EXPECT_EQ(Get(stream), "1");  // Each has a stream of its own.
  EXPECT_EQ(Get("/plain"), "plain");
  EXPECT_EQ(Get(stream, {}, false), "1");
}

TEST_F(MultipartHttpTest, APartIsNoOlderThanItsRequest) {
  EXPECT_EQ(Get("/0-m"), "0");
  std::this_thread::sleep_for(3 * kMoment);  // Busy: all of them wait in the socket.
  EXPECT_EQ(std::stoi(Get("/0-m")), kMany);
}

TEST_F(MultipartHttpTest, ARequestFailsWithItsStreamAndTheNextOneConnectsAgain) {
  request->SetTimeouts(0, 0, 0, 300);
  for (const std::string stream : {"/1-hc", "/1-r", "/1-x", "/1"}) {
    EXPECT_EQ(Get(stream), "1");
    EXPECT_EQ(Get(stream), Failed(stream == "/1" ? HttpFailure::kTimedOut : HttpFailure::kCutShort)) << stream;
  }
  request->SetTimeouts(0, 0, 0, 0);
  for (const bool of_exchange : {true, false}) {
    EXPECT_EQ(Get("/1"), "1");
    ASSERT_TRUE(request->Open("GET", server.Url("/1"), true));
    ASSERT_TRUE((!of_exchange || request->LimitExchange(kMoment)) && request->Send());
    EXPECT_FALSE(of_exchange ? request->WaitForResponse() : request->WaitForResponse(kMoment));
  }
}

TEST_F(MultipartHttpTest, AStreamThatNobodyWantsIsClosed) {
  const auto is_closed = [this] { return open == 0; };
  EXPECT_EQ(Get("/1"), "1");
  EXPECT_FALSE(RunLoop(queue, kIdle / 2, is_closed));
  EXPECT_TRUE(Comes(is_closed));  // Nobody asks.
  EXPECT_EQ(request->ResponseText(), "1");
  EXPECT_EQ(Get("/1"), "1");
  EXPECT_EQ(Get("/2"), "2");
  EXPECT_TRUE(Comes([this] { return open == 1; }));
  request->Abort();
  EXPECT_TRUE(Comes(is_closed));
  // In the middle of a wait: an abort, another address, the owner's end.
  for (int end = 0; end < 3; ++end) {
    EXPECT_EQ(Get("/1"), "1");
    ASSERT_TRUE(request->Open("GET", server.Url("/1"), true) && request->Send());
    bool failed = false;
    loop.RunHandler([&failed, raw = request.get()] { failed = !raw->WaitForResponse(); });
    if (end == 0) request->Abort();
    if (end == 1) request->Open("GET", server.Url("/plain"), true);
    if (end == 2) request = http.Create();
    EXPECT_TRUE(Comes([&] { return failed && open == 0; })) << end;
  }
  EXPECT_EQ(Get("/1"), "1");
  ASSERT_TRUE(request->Open("GET", server.Url("/1"), true) && request->Send());
  curl.reset();
  EXPECT_FALSE(request->WaitForResponse());
  EXPECT_FALSE(request->Open("GET", server.Url("/1"), true) && request->Send());
}

TEST_F(MultipartHttpTest, AStreamBelongsToTheLoginThatOpenedIt) {
  const std::string stream = "/1-2-3-4-5-6-7-8-9?";
  EXPECT_EQ(Get(stream, "one"), "1");
  EXPECT_EQ(Get(stream, "one"), "2");
  EXPECT_EQ(Get(stream, "two"), "1");
  EXPECT_EQ(Get(stream), "no");
  EXPECT_EQ(Get(stream, "two"), "1");
  ASSERT_TRUE(request->Open("GET", server.Url(stream), true) && request->SetRequestHeader("X-Mine", "1"));
  ASSERT_TRUE(request->SetCredentials("ann", "two", 0) && request->Send() && request->WaitForResponse());
  EXPECT_NE(server.Requests().back().find("X-Mine: 1\r\n"), std::string::npos);
}

}  // namespace
}  // namespace orbelcast
