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

using To = fakes::ScriptedServer::Connection;
constexpr std::chrono::milliseconds kMoment{150}, kIdle{600}, kLong{3000};

class MultipartHttpTest : public testing::Test {
 protected:
  /// A stream is as its address says, a letter a step: a digit is a part, "-" a moment's pause, "c" and "r" close and
  /// reset the connection, "x" a header without end, "m" many numbered parts at once. One with a
  /// query needs a login.
  void Serve(const std::string& asked, To& to) {
    const std::string target = fakes::TargetOf(asked);
    if (target.ends_with('?') && asked.find("Authorization: Basic") == std::string::npos) {
      return static_cast<void>(to.Send(fakes::AnswerBytes(401, "no", "WWW-Authenticate: Basic realm=\"c\"\r\n")));
    }
    ++open;
    to.Send("HTTP/1.1 200 OK\r\nA: 0\r\nContent-Type: multipart/x-mixed-replace;boundary=b\r\n\r\n--b\r\n");
    const auto part = [&to](const std::string& text) { to.Send("a: " + text + "\r\n\r\n" + text + "\r\n--b\r\n"); };
    for (const char step : target.substr(1)) {
      if (step == '-') to.Pause(kMoment);
      if (step == 'c') return to.Close();
      if (step == 'r') return to.Reset();
      if (step == 'x') to.Send(std::string(2 * http_limits::kMaxHeaderBytes, 'x'));
      if (step >= '0' && step <= '9') part({step});
      for (int i = 1; step == 'm' && i <= 40; ++i) part(std::to_string(i) + std::string(500, ' '));
    }
    to.Never();
    --open;
  }
  /// One exchange as the frame loop makes them; the answer's text, or the failure's number.
  std::string Get(const std::string& target, const std::string& password = {}, bool async = true) {
    EXPECT_TRUE(request->Open("GET", server.Url(target), async));
    EXPECT_TRUE(password.empty() || request->SetCredentials("ann", password, 0));
    const bool answered = request->Send() && request->WaitForResponse();
    EXPECT_EQ(answered, request->Status() != 0);
    return answered ? request->ResponseText() : Failed(request->Failure());
  }
  static std::string Failed(HttpFailure failure) { return "failure " + std::to_string(static_cast<int>(failure)); }

  std::atomic<int> open = 0;
  fakes::ScriptedServer server{[this](const std::string& asked, To& to) { Serve(asked, to); }};
  HeadlessQueue queue;
  FiberLoop loop{queue};
  CurlHttp curl{loop};
  MultipartHttp http{loop, curl, kIdle};
  std::shared_ptr<HttpRequest> request = http.Create();
};

TEST_F(MultipartHttpTest, EachRequestGetsTheNewestPartOnce) {
  const std::string stream = "/1-23----4";
  EXPECT_EQ(Get(stream), "1");
  EXPECT_EQ(request->GetAllResponseHeaders().find("HTTP/1.1 200 OK\r\na: 1\r\nA: 0\r\n"), 0u);
  fakes::RunLoop(queue, 2 * kMoment);
  EXPECT_EQ(request->ResponseText(), request->GetResponseHeader("A"));
  for (const char* part : {"3", "4"}) EXPECT_EQ(Get(stream), part);
  EXPECT_EQ(server.Requests().size(), 1u);
  const auto first = std::exchange(request, http.Create());
  EXPECT_EQ(Get(stream), "1");  // Each has a stream of its own.
  EXPECT_EQ(Get(stream, {}, false), "1");
}

TEST_F(MultipartHttpTest, APartIsNoOlderThanItsRequest) {
  EXPECT_EQ(Get("/0-m"), "0");
  std::this_thread::sleep_for(3 * kMoment);  // Busy: all of them wait in the socket.
  EXPECT_EQ(Get("/0-m").substr(0, 2), "40");
}

TEST_F(MultipartHttpTest, ARequestFailsWithItsStreamAndTheNextOneConnectsAgain) {
  request->SetTimeouts(0, 0, 0, 300);
  for (const std::string stream : {"/1-c", "/1-r", "/1-x", "/1"}) {
    EXPECT_EQ(Get(stream), "1");
    EXPECT_EQ(Get(stream), Failed(stream == "/1" ? HttpFailure::kTimedOut : HttpFailure::kCutShort)) << stream;
  }
}

TEST_F(MultipartHttpTest, AStreamThatNobodyWantsIsClosed) {
  bool failed = true;
  const auto is_over = [&] { return failed && open == 0; };
  EXPECT_EQ(Get("/1"), "1");
  EXPECT_FALSE(fakes::RunLoop(queue, kIdle / 2, is_over));
  EXPECT_TRUE(fakes::RunLoop(queue, kLong, is_over));  // Nobody asks.
  EXPECT_EQ(Get("/1") + Get("/2"), "12");
  request->Abort();
  EXPECT_TRUE(fakes::RunLoop(queue, kIdle / 2, is_over));
  // In the middle of a wait: an abort, another address, the owner's end.
  for (int end = 0; end < 3; ++end) {
    EXPECT_EQ(Get("/1"), "1");
    ASSERT_TRUE(request->Open("GET", server.Url("/1"), true) && request->Send());
    failed = false;
    loop.RunHandler([&failed, raw = request.get()] { failed = !raw->WaitForResponse(); });
    if (end == 0) request->Abort();
    if (end == 1) request->Open("GET", server.Url("/2"), true);
    if (end == 2) request = http.Create();
    EXPECT_TRUE(fakes::RunLoop(queue, kLong, is_over)) << end;
  }
}

TEST_F(MultipartHttpTest, AStreamBelongsToTheLoginThatOpenedIt) {
  const std::string stream = "/1-2-3-4-5-6-7-8-9?";
  std::string last;
  for (int i = 0; i < 3; ++i) {
    const std::string part = Get(stream, "one");
    EXPECT_GT(part, std::exchange(last, part));
  }
  EXPECT_LT(Get(stream, "two"), last);
  EXPECT_EQ(Get(stream), "no");
}

}  // namespace
}  // namespace orbelcast
