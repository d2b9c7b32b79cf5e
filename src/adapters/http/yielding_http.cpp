#include "adapters/http/yielding_http.h"

#include <string>
#include <utility>

namespace orbelcast {

class YieldingHttp::Request final : public ForwardingHttpRequest {
 public:
  Request(std::shared_ptr<HttpRequest> request, std::shared_ptr<News> news)
      : ForwardingHttpRequest(std::move(request)), news_(std::move(news)) {}

  bool Open(std::string_view method, std::string_view url, bool async) override {
    in_one_go_ = !async;
    url_ = url;
    return ForwardingHttpRequest::Open(method, url, true);
  }

  bool Send() override {
    if (!in_one_go_) return ForwardingHttpRequest::Send();
    // Copies: this object may end while it waits.
    const auto request = Forwarded();
    const auto news = news_;
    const auto url = url_;
    const bool sent = request->Send();
    bool answered = false;
    if (sent) {
      news->waiting = news->waiting + 1;
      answered = request->WaitForResponse();
      news->waiting = news->waiting - 1;
    }
    news->ended({.answered = answered, .status = answered ? request->Status() : 0, .url = url});
    return answered;
  }

 private:
  std::shared_ptr<News> news_;
  bool in_one_go_ = true;
  std::string url_;
};

YieldingHttp::YieldingHttp(HttpRequestFactory& http) : http_(http) {}

std::shared_ptr<HttpRequest> YieldingHttp::Create() {
  return std::make_shared<Request>(http_.Create(), news_);
}

}  // namespace orbelcast
