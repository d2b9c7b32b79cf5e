#include "fakes/fake_http.h"

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <utility>

namespace orbelcast::fakes {

class FakeHttp::Request final : public HttpRequest {
 public:
  explicit Request(FakeHttp& server) : server_(server) {}
  ~Request() override { End(); }

  bool Open(std::string_view method, std::string_view url, bool async) override {
    End();
    failed_ = false;
    answered_ = false;
    async_ = async;
    limit_.reset();
    server_.log.push_back("Open " + std::string(method) + " " + std::string(url) + (async ? " async" : ""));
    return true;
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
    return true;
  }
  bool LimitExchange(std::chrono::milliseconds limit) override {
    server_.log.push_back("LimitExchange " + std::to_string(limit.count()));
    limit_ = limit;
    return true;
  }
  bool Send() override {
    server_.log.emplace_back("Send");
    ++server_.sent;
    answer_ = server_.Next();
    body_ = FrameBytes(answer_.body);
    if (!async_ && server_.block) return SendBlocking();
    done_.Reset();
    under_way_ = true;
    if (!answer_.never) {
      timer_ = server_.loop_.Queue().ArmTimer(answer_.delay, [this] {
        timer_ = 0;
        Finish(!answer_.fails);
      });
    }
    return true;
  }
  /// The limit of a wait is not looked at: a request that never answers is waited for until it is aborted.
  bool WaitForResponse(std::optional<std::chrono::milliseconds>) override {
    if (under_way_) server_.loop_.Wait(done_);
    if (!answered_) failed_ = true;
    return answered_;
  }
  int Status() override {
    if (!answered_) failed_ = true;
    return answered_ ? answer_.status : 0;
  }
  std::string_view GetResponseHeader(std::string_view name) override {
    const auto header = answer_.headers.find(std::string(name));
    return answered_ && header != answer_.headers.end() ? std::string_view(header->second) : std::string_view();
  }
  std::string GetAllResponseHeaders() override { return {}; }
  std::string ResponseText() override { return {answer_.body.begin(), answer_.body.end()}; }
  FrameBytes ResponseBody() override { return answered_ ? body_ : FrameBytes(); }
  void Abort() override {
    server_.log.emplace_back("Abort");
    if (under_way_) Finish(false);
  }
  bool Failed() const override { return failed_; }

 private:
  // The thread stands still until the answer is there or the exchange's limit has run out.
  bool SendBlocking() {
    if (answer_.never && !limit_) throw std::logic_error("a blocking request that nothing will ever end");
    const bool late = limit_ && (answer_.never || answer_.delay > *limit_);
    server_.block(late ? EventQueue::Nanoseconds(*limit_) : answer_.delay);
    Finish(!late && !answer_.fails);
    return answered_;
  }
  void End() {
    if (timer_ != 0) server_.loop_.Queue().CancelTimer(std::exchange(timer_, 0));
    under_way_ = false;
  }
  void Finish(bool answered) {
    End();
    answered_ = answered;
    if (!answered) failed_ = true;
    done_.Complete();
  }

  FakeHttp& server_;
  Answer answer_;
  FrameBytes body_;
  Completion done_;
  EventQueue::TimerId timer_ = 0;
  std::optional<std::chrono::milliseconds> limit_;
  bool async_ = false;
  bool under_way_ = false;
  bool answered_ = false;
  bool failed_ = false;
};

std::shared_ptr<HttpRequest> FakeHttp::Create() {
  return std::make_shared<Request>(*this);
}

Answer FakeHttp::Next() {
  Answer answer = answers.front();
  if (answers.size() > 1) answers.pop_front();
  return answer;
}

int FakeHttp::Count(const std::string& beginning) const {
  return static_cast<int>(
      std::ranges::count_if(log, [&](const std::string& entry) { return entry.starts_with(beginning); }));
}

}  // namespace orbelcast::fakes
