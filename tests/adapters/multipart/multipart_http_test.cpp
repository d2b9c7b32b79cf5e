#include "adapters/multipart/multipart_http.h"

#include <gmock/gmock.h>
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
using fakes::ScriptedServer;
using std::chrono::milliseconds;
using To = ScriptedServer::Connection;

constexpr milliseconds kIdle{200};
constexpr milliseconds kMoment{60};
const std::string kHead =
    "HTTP/1.1 200 OK\r\nServer: camera\r\nRecording: No\r\nContent-Type: multipart/x-mixed-replace;boundary=b\r\n\r\n"
    "--b\r\n";

std::string Part(const std::string& text, const std::string& headers = "") {
  return headers + "\r\n" + text + "\r\n--b\r\n";
}

class MultipartHttpTest : public testing::Test {
 protected:
  /// One exchange as the frame loop makes them; the answer's text, or the failure.
  std::string Get(HttpRequest& on, const std::string& url, const std::string& password = {}, bool async = true) {
    EXPECT_TRUE(on.Open("GET", url, async));
    EXPECT_TRUE(password.empty() || on.SetCredentials("ann", password, 0));
    const bool sent = on.Send();
    const bool answered = sent && on.WaitForResponse();
    EXPECT_EQ(answered, on.Status() != 0);
    EXPECT_EQ(answered, on.Failure() == HttpFailure::kNone);
    EXPECT_EQ(answered, !on.GetAllResponseHeaders().empty());
    return answered ? on.ResponseText() : "failure " + std::to_string(static_cast<int>(on.Failure()));
  }
  static std::string Failed(HttpFailure failure) { return "failure " + std::to_string(static_cast<int>(failure)); }

  HeadlessQueue queue;
  FiberLoop loop{queue};
  std::optional<CurlHttp> curl{loop};
  MultipartHttp http{loop, *curl, kIdle};
  std::shared_ptr<HttpRequest> request = http.Create();
};

TEST_F(MultipartHttpTest, EachRequestGetsTheNewestPartOnce) {
  ScriptedServer server([](const std::string& asked, To& to) {
    if (asked.starts_with("GET /plain")) {
      to.Send(AnswerBytes(200, "plain"));
      return;
    }
    to.Send(kHead + Part("one", "RC_TCR: 1\r\nrecording: Yes\r\n"));
    to.Pause(kMoment);
    to.Send(Part("two") + Part("three", "RC_TCR: 3\r\n"));
    to.Pause(4 * kMoment);
    to.Send(Part("four"));
    to.Never();
  });
  EXPECT_EQ(Get(*request, server.Url("/plain")), "plain");
  EXPECT_EQ(Get(*request, server.Url()), "one");
  EXPECT_EQ(request->GetResponseHeader("Recording"), "Yes");
  EXPECT_EQ(request->GetResponseHeader("server"), "camera");
  EXPECT_EQ(request->GetAllResponseHeaders().find("HTTP/1.1 200 OK\r\nRC_TCR: 1\r\n"), 0u);
  RunLoop(queue, 2 * kMoment);
  EXPECT_EQ(request->ResponseText(), "one");
  EXPECT_EQ(Get(*request, server.Url()), "three");
  EXPECT_EQ(request->GetResponseHeader("RC_TCR"), "3");
  EXPECT_EQ(Get(*request, server.Url()), "four");
  EXPECT_EQ(request->GetResponseHeader("RC_TCR"), "");
  EXPECT_EQ(server.Requests().size(), 2u);
  const auto other = http.Create();
  EXPECT_EQ(Get(*other, server.Url()), "one");
  EXPECT_EQ(Get(*request, server.Url("/plain")), "plain");
  EXPECT_EQ(Get(*http.Create(), server.Url(), {}, false), "one");
}

TEST_F(MultipartHttpTest, APartIsNoOlderThanItsRequest) {
  constexpr int kParts = 40;
  ScriptedServer server([](const std::string&, To& to) {
    to.Send(kHead + Part("first"));
    to.Pause(kMoment);
    for (int i = 1; i <= kParts; ++i) to.Send(Part(std::to_string(i) + std::string(1000, ' ')));
    to.Never();
  });
  EXPECT_EQ(Get(*request, server.Url()), "first");
  std::this_thread::sleep_for(3 * kMoment);  // Busy: all of them wait in the socket.
  EXPECT_EQ(std::stoi(Get(*request, server.Url())), kParts);
}

TEST_F(MultipartHttpTest, ARequestThatWaitsFailsWithItsStreamAndTheNextOneConnectsAgain) {
  std::atomic<int> connection = 0;
  ScriptedServer server([&connection](const std::string&, To& to) {
    to.Send(kHead + Part("part"));
    switch (++connection) {
      case 1:
        to.Pause(kMoment);
        to.Send("\r\nhalf a pa");
        return to.Close();
      case 2:
        return to.Close();
      case 3:
        to.Pause(kMoment);
        return to.Reset();
      case 4:
        to.Pause(kMoment);
        to.Send(std::string(2 * http_limits::kMaxHeaderBytes, 'x'));
        break;
      default:
        break;
    }
    to.Never();
  });
  request->SetTimeouts(0, 0, 0, 400);
  EXPECT_EQ(Get(*request, server.Url()), "part");
  EXPECT_EQ(Get(*request, server.Url()), Failed(HttpFailure::kCutShort));
  EXPECT_EQ(Get(*request, server.Url()), "part");
  RunLoop(queue, kMoment);
  EXPECT_EQ(Get(*request, server.Url()), "part");
  EXPECT_EQ(Get(*request, server.Url()), Failed(HttpFailure::kCutShort));
  EXPECT_EQ(Get(*request, server.Url()), "part");
  EXPECT_EQ(Get(*request, server.Url()), Failed(HttpFailure::kCutShort));
  EXPECT_EQ(Get(*request, server.Url()), "part");
  EXPECT_EQ(Get(*request, server.Url()), Failed(HttpFailure::kTimedOut));
  EXPECT_EQ(Get(*request, server.Url()), "part");
  ASSERT_TRUE(request->Open("GET", server.Url(), true) && request->LimitExchange(kMoment) && request->Send());
  EXPECT_FALSE(request->WaitForResponse());
  EXPECT_EQ(Get(*request, server.Url()), "part");
  ASSERT_TRUE(request->Open("GET", server.Url(), true) && request->Send());
  EXPECT_FALSE(request->WaitForResponse(kMoment));
  EXPECT_EQ(request->Failure(), HttpFailure::kTimedOut);
}

TEST_F(MultipartHttpTest, AStreamThatNobodyWantsIsClosed) {
  std::atomic<int> open = 0;
  ScriptedServer server([&open](const std::string&, To& to) {
    ++open;
    to.Send(kHead + Part("part"));
    to.Never();
    --open;
  });
  const auto becomes = [&](int count) { return RunLoop(queue, 20 * kMoment, [&] { return open == count; }); };
  EXPECT_EQ(Get(*request, server.Url()), "part");
  RunLoop(queue, kIdle / 2);
  EXPECT_EQ(open, 1);
  EXPECT_TRUE(becomes(0));  // Nobody asks.
  EXPECT_EQ(request->ResponseText(), "part");

  EXPECT_EQ(Get(*request, server.Url()), "part");
  EXPECT_EQ(Get(*request, server.Url("/other")), "part");
  EXPECT_TRUE(becomes(1));
  request->Abort();
  EXPECT_TRUE(becomes(0));
  EXPECT_EQ(request->ResponseText(), "part");

  // In the middle of a wait: an abort, another address, the owner's end.
  for (const auto& end : {+[](std::shared_ptr<HttpRequest>& on) { on->Abort(); },
                          +[](std::shared_ptr<HttpRequest>& on) { on->Open("GET", "http://127.0.0.1:1/", true); },
                          +[](std::shared_ptr<HttpRequest>& on) { on.reset(); }}) {
    EXPECT_EQ(Get(*request, server.Url()), "part");
    ASSERT_TRUE(request->Open("GET", server.Url(), true) && request->Send());
    bool ended = false;
    loop.RunHandler([&, raw = request.get()] { ended = !raw->WaitForResponse(); });
    end(request);
    EXPECT_TRUE(RunLoop(queue, 20 * kMoment, [&] { return ended && open == 0; }));
  }
  request = http.Create();
  EXPECT_EQ(Get(*request, server.Url()), "part");
  ASSERT_TRUE(request->Open("GET", server.Url(), true) && request->Send());
  curl.reset();  // Whatever its factory becomes.
  EXPECT_FALSE(request->WaitForResponse());
  EXPECT_FALSE(request->Open("GET", server.Url(), true) && request->Send());
}

TEST_F(MultipartHttpTest, AStreamBelongsToWhoOpenedIt) {
  ScriptedServer server([](const std::string& asked, To& to) {
    if (asked.find("Authorization: Basic ") == std::string::npos) {
      to.Send(AnswerBytes(401, "no", "WWW-Authenticate: Basic realm=\"c\"\r\n"));
      return;
    }
    for (to.Send(kHead); to.Send(Part(asked.find("YW5uOm9uZQ==") != std::string::npos ? "of one" : "of two"));) {
      if (!to.Pause(kMoment)) break;
    }
  });
  EXPECT_EQ(Get(*request, server.Url(), "one"), "of one");
  EXPECT_EQ(Get(*request, server.Url(), "one"), "of one");
  EXPECT_EQ(server.Requests().size(), 2u);
  EXPECT_EQ(Get(*request, server.Url(), "two"), "of two");
  EXPECT_EQ(Get(*request, server.Url()), "no");
  EXPECT_EQ(Get(*request, server.Url(), "two"), "of two");
  ASSERT_TRUE(request->Open("GET", server.Url(), true) && request->SetRequestHeader("X-Mine", "1"));
  ASSERT_TRUE(request->SetCredentials("ann", "one", 0) && request->Send() && request->WaitForResponse());
  EXPECT_THAT(server.Requests().back(), testing::HasSubstr("X-Mine: 1\r\n"));
}

}  // namespace
}  // namespace orbelcast
