#pragma once

#include <chrono>
#include <memory>

#include "platform/message_loop.h"
#include "platform/streaming_http.h"

namespace orbelcast {

/// Requests that take a stream of pictures for a camera that is asked for them one by one: where an answer is
/// multipart/x-mixed-replace, each request is answered with the newest part of it that has come.
///
/// A stream belongs to one request object and stays open from one exchange to the next, as long as they ask for the
/// same address with the same credentials. A part is an answer once. The part that an exchange gets is no older than
/// the newest that this machine had received when it was sent; those before it are dropped. Headers of the part come
/// before those of the stream. The receive limit bounds the wait for a part.
///
/// The stream is closed by `Abort`, by `Open` with another address, when the object goes, and where nobody has asked
/// for a part for a while. A request that waits when it ends fails; the next one connects again. A request that is sent
/// in one go takes the first part, and has no stream afterwards.
class MultipartHttp final : public HttpRequestFactory {
 public:
  /// A stream that is not asked for that long is closed: a viewer asks once a second at least.
  static constexpr std::chrono::milliseconds kIdleTime{10000};

  /// `loop` and `http` outlive the factory. Requests may outlive it as those of `http` may.
  MultipartHttp(MessageLoop& loop, StreamingHttpFactory& http, std::chrono::milliseconds idle_time = kIdleTime)
      : loop_(loop), http_(http), idle_time_(idle_time) {}

  std::shared_ptr<HttpRequest> Create() override;

 private:
  MessageLoop& loop_;
  StreamingHttpFactory& http_;
  const std::chrono::milliseconds idle_time_;
};

}  // namespace orbelcast
