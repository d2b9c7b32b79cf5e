#pragma once

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/http_request.h"
#include "platform/message_loop.h"

namespace orbelcast::fakes {

/// What a fake server answers to one request.
struct Answer {
  int status = 200;
  std::map<std::string, std::string> headers;
  std::vector<std::uint8_t> body;
  EventQueue::Nanoseconds delay{};            ///< From `Send` until the answer is there.
  bool fails = false;                         ///< The exchange fails: no answer at all.
  bool never = false;                         ///< No answer until the request is aborted.
  HttpFailure failure = HttpFailure::kOther;  ///< Why it fails.
};

/// Request objects that answer from the test's own script and keep a log of what was done with them.
class FakeHttp final : public HttpRequestFactory {
 public:
  explicit FakeHttp(MessageLoop& loop) : loop_(loop) {}
  std::shared_ptr<HttpRequest> Create() override;

  /// Answers the requests in turn; the last answer serves all that follow.
  std::deque<Answer> answers{Answer{}};
  /// "SetTimeouts 1 2 3 4", "Open GET http://… async", "SetCredentials user password 0", "Send", "Abort" and so
  /// on, in order.
  std::vector<std::string> log;
  /// Where it is set and names an answer for an address, that one is given, and none of the list is used up.
  std::function<std::optional<Answer>(const std::string& url)> route;
  /// How a synchronous request lets its answer's delay pass. Unset, it answers at once.
  std::function<void(EventQueue::Nanoseconds)> block;
  int sent = 0;
  int under_way = 0;       ///< Asynchronous requests that are sent and not answered yet.
  int most_under_way = 0;  ///< The most of them at one time.

  /// The addresses that were opened, in order.
  std::vector<std::string> Opened() const;
  /// Counts the entries of the log that begin with `beginning`.
  int Count(const std::string& beginning) const;

 private:
  class Request;
  Answer Next(const std::string& url);
  MessageLoop& loop_;
};

}  // namespace orbelcast::fakes
