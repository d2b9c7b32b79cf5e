#pragma once

#include <curl/curl.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "adapters/curl/easy_transfer.h"
#include "adapters/curl/http_address.h"
#include "adapters/curl/http_answer.h"
#include "adapters/curl/http_login.h"
#include "adapters/curl/multiplexer.h"
#include "platform/streaming_http.h"

namespace orbelcast {

/// The implementation of a request object: one exchange after another, each a chain of transfers (the request, and
/// again where the server redirects it or asks for a login). The states are those of HttpRequest, with these
/// transitions:
///
///   Open             any                          -> kOpened, kClosed where it is refused
///   Send             kOpened, kAnswered, kFailed  -> kUnderWay, kFailed where it cannot begin
///   Ended            kUnderWay                    -> kUnderWay with the next transfer of the chain,
///                                                    kAnswered, kFailed
///   a limit, Abort   kUnderWay                    -> kFailed
///
/// Only EnterState changes the state. Leaving kUnderWay ends the transfer and wakes the waiter, with the outcome of
/// that very exchange.
///
/// A waiter for an answer keeps the exchange alive.
class Exchange final : public StreamingHttpRequest, public MultiplexedTransfer, private TransferWatcher {
 public:
  /// `reader`, which may be null, outlives every exchange.
  explicit Exchange(std::shared_ptr<Multiplexer> multiplexer, HttpBodyReader* reader = nullptr);
  ~Exchange() override;
  Exchange(const Exchange&) = delete;
  Exchange& operator=(const Exchange&) = delete;

  bool Open(std::string_view method, std::string_view url, bool async) override;
  bool SetRequestHeader(std::string_view name, std::string_view value) override;
  bool SetCredentials(std::string_view user_name, std::string_view password, int flags) override;
  bool SetTimeouts(int resolve, int connect, int send, int receive) override;
  bool LimitExchange(std::chrono::milliseconds limit) override;
  bool Send() override;
  bool WaitForResponse(std::optional<std::chrono::milliseconds> limit) override;
  int Status() override { return Answer().Status(); }
  HttpFailure Failure() override { return failure_; }
  std::string_view GetResponseHeader(std::string_view name) override { return Answer().Header(name); }
  std::string GetAllResponseHeaders() override { return Answer().Headers(); }
  std::string ResponseText() override { return std::string(Answer().BodyText()); }
  FrameBytes ResponseBody() override { return Answer().Body(); }
  void Abort() override;
  void LiftLimits() override { limits_ = {}; }
  void LimitRest(std::chrono::milliseconds limit) override;
  std::size_t Unread() override;

  CURL* Handle() override { return transfer_ ? transfer_->Handle() : nullptr; }
  std::optional<EventQueue::Nanoseconds> Deadline() const override { return limits_.Next(); }
  void Ended(CURLcode result) override;

 private:
  enum class State { kClosed, kOpened, kUnderWay, kAnswered, kFailed };

  /// An exchange under way, as its waiters see it; they keep it until they have its outcome.
  struct Outcome {
    Completion ended;
    bool answered = false;
  };

  /// In milliseconds; 0 is no limit.
  struct Timeouts {
    int resolve = 0;
    int connect = 0;
    int receive = 0;
  };

  /// The times, by EventQueue::Now, at which the exchange has taken too long.
  struct Limits {
    using Time = std::optional<EventQueue::Nanoseconds>;
    Time whole;
    Time connection;  ///< Of looking up the name, then of connecting to the address that is tried.
    Time receive;     ///< From the first request of the chain sent.
    Time Next() const;
  };

  /// The request to be sent next.
  struct Settings {
    std::string method;
    HttpAddress address;
    HeaderLines headers;
    std::optional<Credentials> credentials;
    bool async = false;
    std::optional<std::chrono::milliseconds> limit;
  };

  /// The redirects and logins that one exchange may still follow.
  struct Allowance {
    int redirects = 0;
    int logins = 0;
  };

  void Connecting() override;
  void Sending() override;
  bool TakeHeaderLine(std::string_view line) override { return answer_.TakeHeaderLine(line); }
  bool TakeBody(std::string_view part, std::int64_t announced) override;

  /// The answer; an empty one in every state but kAnswered.
  HttpAnswer& Answer() { return state_ == State::kAnswered ? answer_ : no_answer_; }
  void EnterState(State state);
  void Fail(HttpFailure failure);
  Limits::Time At(std::chrono::milliseconds from_now) const;
  Limits::Time In(int milliseconds) const;
  void RememberLogin();
  HeaderLines HeadersFor(const HttpAddress& address);
  bool BeginTransfer(const HttpAddress& address);
  bool MayAsk(const HttpAddress& address) const;
  bool AnswersLogin();

  const std::shared_ptr<Multiplexer> multiplexer_;
  HttpBodyReader* const reader_;
  State state_ = State::kClosed;
  HttpFailure failure_ = HttpFailure::kNone;  // of kFailed, and of kClosed after an address that was refused
  Settings wanted_;
  std::string url_;  // as given to Open last, when it was accepted
  Timeouts timeouts_;

  std::shared_ptr<Outcome> outcome_;        // in kUnderWay alone
  std::unique_ptr<EasyTransfer> transfer_;  // in kUnderWay alone
  HttpAddress asked_;                       // by the transfer
  Limits limits_;
  Allowance allowance_;
  std::optional<bool> reader_reads_;  // the transfer's body; nothing before it begins
  bool reader_has_enough_ = false;

  std::optional<HttpLogin> login_;  // at the server of login_address_
  HttpAddress login_address_;
  HttpAnswer answer_;
  HttpAnswer no_answer_;
};

}  // namespace orbelcast
