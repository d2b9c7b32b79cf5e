#pragma once

#include <memory>

#include "platform/message_loop.h"
#include "platform/streaming_http.h"

namespace orbelcast {

class Multiplexer;

/// Makes the requests of one message loop, which share their connections. Nothing is sent but what was asked for: no
/// proxy, cookie, .netrc or compression. Effects on the process: libcurl is initialised once (which initialises
/// OpenSSL), names are resolved on threads of libcurl's, no signal is used.
///
/// The loop must outlive the factory. Requests may outlive both: the factory's end ends every exchange and wakes
/// its waiter, and a request that is left over fails from then on.
class CurlHttp final : public HttpRequestFactory, public StreamingHttpFactory {
 public:
  explicit CurlHttp(MessageLoop& loop);
  ~CurlHttp() override;
  CurlHttp(const CurlHttp&) = delete;
  CurlHttp& operator=(const CurlHttp&) = delete;

  /// From now on no other server is asked, by whichever request, nor followed to by a redirect: opening its address is
  /// refused, and the exchange that it redirects fails.
  void AskOnly(ServerRule rule);

  std::shared_ptr<HttpRequest> Create() override;
  std::shared_ptr<StreamingHttpRequest> CreateStreaming(HttpBodyReader& reader) override;

 private:
  std::shared_ptr<Multiplexer> multiplexer_;
};

}  // namespace orbelcast
