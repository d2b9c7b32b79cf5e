#include "adapters/curl/curl_http.h"

#include "adapters/curl/exchange.h"
#include "adapters/curl/multiplexer.h"

namespace orbelcast {

namespace {

/// What the caller holds. The exchange behind it lives on while somebody waits in it, so a request may be dropped by
/// whoever owns it in the middle of a wait.
class CurlRequest final : public HttpRequest {
 public:
  explicit CurlRequest(std::shared_ptr<Multiplexer> multiplexer)
      : exchange_(std::make_shared<Exchange>(std::move(multiplexer))) {}
  ~CurlRequest() override { exchange_->Abort(); }

  bool Open(std::string_view method, std::string_view url, bool async) override {
    return exchange_->Open(method, url, async);
  }
  bool SetRequestHeader(std::string_view name, std::string_view value) override {
    return exchange_->SetRequestHeader(name, value);
  }
  bool SetCredentials(std::string_view user_name, std::string_view password, int flags) override {
    return exchange_->SetCredentials(user_name, password, flags);
  }
  bool SetTimeouts(int resolve, int connect, int send, int receive) override {
    return exchange_->SetTimeouts(resolve, connect, send, receive);
  }
  bool LimitExchange(std::chrono::milliseconds limit) override { return exchange_->LimitExchange(limit); }
  bool Send() override { return exchange_->Send(); }
  bool WaitForResponse(std::optional<std::chrono::milliseconds> limit) override {
    const auto alive = exchange_;
    return alive->WaitForResponse(limit);
  }
  int Status() override { return exchange_->Status(); }
  std::string_view GetResponseHeader(std::string_view name) override { return exchange_->Answer().Header(name); }
  std::string GetAllResponseHeaders() override { return exchange_->Answer().Headers(); }
  std::string ResponseText() override { return std::string(exchange_->Answer().BodyText()); }
  FrameBytes ResponseBody() override { return exchange_->ResponseBody(); }
  void Abort() override { exchange_->Abort(); }
  bool Failed() const override { return exchange_->Failed(); }

 private:
  std::shared_ptr<Exchange> exchange_;
};

}  // namespace

CurlHttp::CurlHttp(MessageLoop& loop) : multiplexer_(std::make_shared<Multiplexer>(loop)) {}

CurlHttp::~CurlHttp() {
  multiplexer_->Close();
}

std::shared_ptr<HttpRequest> CurlHttp::Create() {
  return std::make_shared<CurlRequest>(multiplexer_);
}

}  // namespace orbelcast
