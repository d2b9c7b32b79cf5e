#include "adapters/qt/yielding_http.h"

#include <utility>

namespace orbelcast {

class YieldingHttp::Request final : public HttpRequest {
 public:
  Request(std::shared_ptr<HttpRequest> request, std::shared_ptr<News> news)
      : request_(std::move(request)), news_(std::move(news)) {}

  bool Open(std::string_view method, std::string_view url, bool async) override {
    in_one_go_ = !async;
    return request_->Open(method, url, true);
  }

  bool Send() override {
    if (!in_one_go_) return request_->Send();
    // Whatever happens to this object while it waits.
    const auto request = request_;
    const auto news = news_;
    const bool sent = request->Send();
    bool answered = false;
    if (sent) {
      news->waiting = news->waiting + 1;
      answered = request->WaitForResponse();
      news->waiting = news->waiting - 1;
    }
    news->ended({.answered = answered, .status = answered ? request->Status() : 0});
    return answered;
  }

  bool SetRequestHeader(std::string_view name, std::string_view value) override {
    return request_->SetRequestHeader(name, value);
  }
  bool SetCredentials(std::string_view user_name, std::string_view password, int flags) override {
    return request_->SetCredentials(user_name, password, flags);
  }
  bool SetTimeouts(int resolve, int connect, int send, int receive) override {
    return request_->SetTimeouts(resolve, connect, send, receive);
  }
  bool LimitExchange(std::chrono::milliseconds limit) override { return request_->LimitExchange(limit); }
  bool WaitForResponse(std::optional<std::chrono::milliseconds> limit) override {
    return request_->WaitForResponse(limit);
  }
  int Status() override { return request_->Status(); }
  std::string_view GetResponseHeader(std::string_view name) override { return request_->GetResponseHeader(name); }
  std::string GetAllResponseHeaders() override { return request_->GetAllResponseHeaders(); }
  std::string ResponseText() override { return request_->ResponseText(); }
  FrameBytes ResponseBody() override { return request_->ResponseBody(); }
  void Abort() override { request_->Abort(); }
  bool Failed() const override { return request_->Failed(); }

 private:
  std::shared_ptr<HttpRequest> request_;
  std::shared_ptr<News> news_;
  bool in_one_go_ = true;
};

YieldingHttp::YieldingHttp(HttpRequestFactory& http) : http_(http) {}

std::shared_ptr<HttpRequest> YieldingHttp::Create() {
  return std::make_shared<Request>(http_.Create(), news_);
}

}  // namespace orbelcast
