#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/frame_bytes.h"

namespace orbelcast {

/// The status of an answer that has what was asked for.
inline constexpr int kHttpOk = 200;

/// One HTTP exchange after another with one server, as the controls make them.
///
/// Nothing here throws. A step that cannot be done returns false and leaves a mark (`Failed`) that stays until the next
/// `Open`. The address goes out byte for byte: nothing is escaped, nothing normalised. An address, header or credential
/// that holds a control character (CR, LF and NUL among them) is refused, so nothing that is typed can add a header
/// line.
///
/// Redirects are followed (at most ten, http and https only); connections are kept open and shared by all requests.
class HttpRequest {
 public:
  virtual ~HttpRequest() = default;

  /// Prepares an exchange and clears the mark; an exchange that is under way is dropped (whoever waits for this request
  /// goes on waiting, now for the new exchange). Headers and credentials are forgotten, time-outs kept. With `async`
  /// false `Send` blocks the thread until the answer is complete or a time-out ends it.
  virtual bool Open(std::string_view method, std::string_view url, bool async = false) = 0;
  virtual bool SetRequestHeader(std::string_view name, std::string_view value) = 0;
  /// Sent when the server asks for them (Basic or Digest), and from then on at once. `flags` 0: for the server itself.
  virtual bool SetCredentials(std::string_view user_name, std::string_view password, int flags) = 0;
  /// Limits in milliseconds; 0 is no limit. Resolving and connecting share the sum of theirs; `receive` bounds the time
  /// from the request sent to the answer complete.
  virtual bool SetTimeouts(int resolve, int connect, int send, int receive) = 0;
  /// Bounds the next exchange as a whole, from `Send` to the answer complete, on top of the other limits; forgotten by
  /// the next `Open`. Without it only `SetTimeouts` bounds a `Send` that blocks.
  virtual bool LimitExchange(std::chrono::milliseconds limit) = 0;
  /// Sends the request, without a body.
  virtual bool Send() = 0;
  /// Waits until no exchange is under way, letting the message loop run. True when the answer is there; false when the
  /// exchange failed or was aborted, or `limit` ran out (which ends the exchange).
  virtual bool WaitForResponse(std::optional<std::chrono::milliseconds> limit = std::nullopt) = 0;

  /// HTTP status of the last complete answer since `Open`; 0, and the mark is set, where there is none.
  virtual int Status() = 0;
  /// The value of a header of the last complete answer, blanks around it removed; empty where it is absent. Names match
  /// in any letter case; the first of several wins. Valid until the next `Open`.
  virtual std::string_view GetResponseHeader(std::string_view name) = 0;
  /// The whole header block of the last answer, lines ended by CR LF.
  virtual std::string GetAllResponseHeaders() = 0;
  virtual std::string ResponseText() = 0;
  /// The body of the last complete answer, shared; empty where there is none. May be read again.
  virtual FrameBytes ResponseBody() = 0;

  /// Ends the exchange that is under way and wakes whoever waits for it. Harmless on an idle request.
  virtual void Abort() = 0;

  /// True when a step has failed since the last `Open`.
  virtual bool Failed() const = 0;
};

/// Passes everything on to another request object; what is derived from it changes a step or two.
class ForwardingHttpRequest : public HttpRequest {
 public:
  explicit ForwardingHttpRequest(std::shared_ptr<HttpRequest> request) : request_(std::move(request)) {}

  bool Open(std::string_view method, std::string_view url, bool async) override {
    return request_->Open(method, url, async);
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
  bool Send() override { return request_->Send(); }
  bool WaitForResponse(std::optional<std::chrono::milliseconds> limit) override {
    const auto alive = request_;  // this object may be dropped in the middle of its own wait
    return alive->WaitForResponse(limit);
  }
  int Status() override { return request_->Status(); }
  std::string_view GetResponseHeader(std::string_view name) override { return request_->GetResponseHeader(name); }
  std::string GetAllResponseHeaders() override { return request_->GetAllResponseHeaders(); }
  std::string ResponseText() override { return request_->ResponseText(); }
  FrameBytes ResponseBody() override { return request_->ResponseBody(); }
  void Abort() override { request_->Abort(); }
  bool Failed() const override { return request_->Failed(); }

 protected:
  const std::shared_ptr<HttpRequest>& Forwarded() const { return request_; }

 private:
  const std::shared_ptr<HttpRequest> request_;
};

/// Makes request objects.
class HttpRequestFactory {
 public:
  virtual ~HttpRequestFactory() = default;
  /// A new request. It may outlive the caller's interest: dropping it aborts what is under way.
  virtual std::shared_ptr<HttpRequest> Create() = 0;
};

/// What any peer is held to, however it behaves.
namespace http_limits {
/// A picture of 64 megapixels at a high quality still fits.
inline constexpr std::size_t kMaxBodyBytes = 64u * 1024 * 1024;
/// Some hundred headers of a usual length; real cameras send a dozen.
inline constexpr std::size_t kMaxHeaderBytes = 256u * 1024;
inline constexpr int kMaxRedirects = 10;  ///< What browsers and libraries allow is of that order.
}  // namespace http_limits

}  // namespace orbelcast
