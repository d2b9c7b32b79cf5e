#include "fakes/fake_http.h"

#include <algorithm>
#include <cctype>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace orbelcast::fakes {

class FakeHttp::Request final : public HttpRequest {
 public:
  explicit Request(FakeHttp& server) : server_(server) {}
  ~Request() override { Finish(false, HttpFailure::kAborted); }

  bool Open(std::string_view method, std::string_view url, bool async) override {
    Finish(false, HttpFailure::kAborted);
    answered_ = false;
    async_ = async;
    limit_.reset();
    url_ = url;
    opened_ = !url.empty() && url != "http://" &&
              std::ranges::none_of(url, [](unsigned char letter) { return std::iscntrl(letter) != 0; });
    server_.log.push_back(opened_ ? "Open " + std::string(method) + " " + url_ + (async ? " async" : "") : "Refused");
    failure_ = opened_ ? HttpFailure::kNone : HttpFailure::kUnreachable;
    return opened_;
  }
  bool SetRequestHeader(std::string_view name, std::string_view value) override {
    server_.log.push_back("SetRequestHeader " + std::string(name) + ": " + std::string(value));
    return true;
  }
  bool SetCredentials(std::string_view user_name, std::string_view password, int flags) override {
    server_.log.push_back("SetCredentials " + std::string(user_name) + " " + std::string(password) + " " +
                          std::to_string(flags));
    return true;
  }
  bool SetTimeouts(int resolve, int connect, int send, int receive) override {
    server_.log.push_back("SetTimeouts " + std::to_string(resolve) + " " + std::to_string(connect) + " " +
                          std::to_string(send) + " " + std::to_string(receive));
    receive_ = receive;
    return true;
  }
  bool LimitExchange(std::chrono::milliseconds limit) override {
    server_.log.push_back("LimitExchange " + std::to_string(limit.count()));
    limit_ = limit;
    return true;
  }
  bool Send() override {
    if (!opened_) return false;
    server_.log.emplace_back("Send");
    ++server_.sent;
    answer_ = server_.Next(url_);
    body_ = FrameBytes(answer_.body);
    if (!async_) return SendBlocking();
    exchange_ = std::make_shared<Exchange>();
    server_.most_under_way = std::max(server_.most_under_way, ++server_.under_way);
    if (!answer_.never) {
      timer_ = server_.loop_.Queue().ArmTimer(answer_.delay, [this] {
        timer_ = 0;
        Finish(!answer_.fails, answer_.failure);
      });
    }
    return true;
  }
  /// The limit of a wait is not looked at: a request that never answers is waited for until it is aborted.
  bool WaitForResponse(std::optional<std::chrono::milliseconds>) override {
    const std::shared_ptr<Exchange> awaited = exchange_;
    if (!awaited) return answered_;
    server_.loop_.Wait(awaited->ended);
    return awaited->answered;
  }
  int Status() override { return answered_ ? answer_.status : 0; }
  HttpFailure Failure() override { return failure_; }
  std::string_view GetResponseHeader(std::string_view name) override {
    const auto header = answer_.headers.find(std::string(name));
    return answered_ && header != answer_.headers.end() ? std::string_view(header->second) : std::string_view();
  }
  std::string GetAllResponseHeaders() override { return {}; }
  std::string ResponseText() override {
    return answered_ ? std::string(answer_.body.begin(), answer_.body.end()) : std::string();
  }
  FrameBytes ResponseBody() override { return answered_ ? body_ : FrameBytes(); }
  void Abort() override {
    server_.log.emplace_back("Abort");
    if (exchange_) Finish(false, HttpFailure::kAborted);
  }

 private:
  // The thread stands still until the answer is there or a limit has run out.
  bool SendBlocking() {
    if (!limit_ && receive_ > 0) limit_ = std::chrono::milliseconds(receive_);
    if (answer_.never && !limit_) throw std::logic_error("a blocking request that nothing will ever end");
    const bool late = limit_ && (answer_.never || answer_.delay > *limit_);
    if (server_.block) server_.block(late ? EventQueue::Nanoseconds(*limit_) : answer_.delay);
    Finish(!late && !answer_.fails, late ? HttpFailure::kTimedOut : answer_.failure);
    return answered_;
  }
  // Ends the exchange that is under way, if there is one; whoever waits for it has its outcome.
  void Finish(bool answered, HttpFailure failure) {
    if (timer_ != 0) server_.loop_.Queue().CancelTimer(std::exchange(timer_, 0));
    answered_ = answered;
    failure_ = answered ? HttpFailure::kNone : failure;
    const auto ended = std::exchange(exchange_, nullptr);
    if (!ended) return;
    --server_.under_way;
    ended->answered = answered;
    ended->ended.Complete();
  }

  struct Exchange {
    Completion ended;
    bool answered = false;
  };
  FakeHttp& server_;
  Answer answer_;
  FrameBytes body_;
  std::shared_ptr<Exchange> exchange_;  // while it is under way
  EventQueue::TimerId timer_ = 0;
  std::optional<std::chrono::milliseconds> limit_;
  int receive_ = 0;
  std::string url_;
  bool opened_ = false;
  bool async_ = false;
  bool answered_ = false;
  HttpFailure failure_ = HttpFailure::kNone;
};

std::shared_ptr<HttpRequest> FakeHttp::Create() {
  return std::make_shared<Request>(*this);
}

Answer FakeHttp::Next(const std::string& url) {
  if (route) {
    if (auto answer = route(url)) return std::move(*answer);
  }
  Answer answer = answers.front();
  if (answers.size() > 1) answers.pop_front();
  return answer;
}

std::vector<std::string> FakeHttp::Opened() const {
  constexpr std::string_view kOpen = "Open GET ";
  std::vector<std::string> urls;
  for (const std::string& entry : log) {
    if (!entry.starts_with(kOpen)) continue;
    std::string url = entry.substr(kOpen.size());
    urls.push_back(url.ends_with(" async") ? url.substr(0, url.size() - std::string_view(" async").size()) : url);
  }
  return urls;
}

int FakeHttp::Count(const std::string& beginning) const {
  return static_cast<int>(
      std::ranges::count_if(log, [&](const std::string& entry) { return entry.starts_with(beginning); }));
}

}  // namespace orbelcast::fakes
