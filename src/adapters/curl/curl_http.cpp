#include "adapters/curl/curl_http.h"

#include <utility>

#include "adapters/curl/exchange.h"
#include "adapters/curl/multiplexer.h"

namespace orbelcast {

namespace {

/// The caller's side of a request. Its exchange lives on while a handler waits in it, so the owner may drop
/// the request in the middle of a wait.
class CurlRequest final : public ForwardingHttpRequest {
 public:
  explicit CurlRequest(std::shared_ptr<Multiplexer> multiplexer)
      : ForwardingHttpRequest(std::make_shared<Exchange>(std::move(multiplexer))) {}
  ~CurlRequest() override { Forwarded()->Abort(); }
};

}  // namespace

CurlHttp::CurlHttp(MessageLoop& loop) : multiplexer_(std::make_shared<Multiplexer>(loop)) {}

CurlHttp::~CurlHttp() {
  multiplexer_->Close();
}

void CurlHttp::AskOnly(ServerRule rule) {
  multiplexer_->may_ask = std::move(rule);
}

std::shared_ptr<HttpRequest> CurlHttp::Create() {
  return std::make_shared<CurlRequest>(multiplexer_);
}

std::shared_ptr<StreamingHttpRequest> CurlHttp::CreateStreaming(HttpBodyReader& reader) {
  return std::make_shared<Exchange>(multiplexer_, &reader);
}

}  // namespace orbelcast
