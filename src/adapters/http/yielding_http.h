#pragma once

#include <memory>
#include <string>

#include "platform/http_request.h"
#include "toolkit/property.h"

namespace orbelcast {

/// Requests that wait where others would block the thread: a window stays alive while a server does not answer.
///
/// A request that was opened to be sent in one go goes out as one that is waited for, which suspends only the handler
/// that sends it. The sender sees no difference, except that other handlers may have run meanwhile.
class YieldingHttp final : public HttpRequestFactory {
 public:
  /// How a request ended that was sent in one go.
  struct Outcome {
    bool answered;
    int status;         ///< HTTP status of the answer; 0 where there was none.
    std::string url{};  ///< The address asked for. It may hold a login.
  };

  /// `http` outlives this factory.
  explicit YieldingHttp(HttpRequestFactory& http);

  std::shared_ptr<HttpRequest> Create() override;

  /// Requests that are being waited for, of those that were sent in one go.
  Property<int>& Waiting() { return news_->waiting; }
  /// Tells how each of them ended.
  Signal<const Outcome&>& Ended() { return news_->ended; }

 private:
  class Request;
  struct News {
    Property<int> waiting;
    Signal<const Outcome&> ended;
  };

  HttpRequestFactory& http_;
  std::shared_ptr<News> news_ = std::make_shared<News>();  // a request may outlive its factory
};

}  // namespace orbelcast
