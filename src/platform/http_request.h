#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/frame_bytes.h"

namespace orbelcast {

/// The status of a successful answer.
inline constexpr int kHttpOk = 200;

/// Why an exchange ended without an answer.
enum class HttpFailure {
  kNone,         ///< It did not: there is an answer, or nothing was sent yet.
  kUnreachable,  ///< The address cannot be asked, its host is unknown, or does not take the connection.
  kTimedOut,     ///< One of the limits ran out.
  kCutShort,     ///< The connection ended before the answer was complete, or what came is no answer within the limits.
  kAborted,      ///< By `Abort`.
  kOther,        ///< Too many redirects, no memory, and all others.
};

/// One HTTP exchange after another with one server, as the controls make them.
///
/// A request is in one of five states, and each step says its transitions:
///
///   closed      no address: nothing was opened, or the last `Open` was refused
///   opened      `Open` took an address, nothing was sent yet
///   under way   `Send` has begun an exchange
///   answered    the exchange ended with a complete answer, which can be read
///   failed      it ended without one
///
/// Nothing here throws. Each step returns whether it worked; one that is refused returns false and changes nothing but
/// as its description says, so a caller may go on with its next step. The address goes out byte for byte: nothing is
/// escaped, nothing normalised. An address, header or credential that holds a control character (CR, LF and NUL among
/// them) is refused, so nothing that is typed can add a header line.
///
/// Redirects are followed (at most ten, http and https only; credentials are sent to the server that was asked
/// alone); connections are kept open and shared by all requests.
class HttpRequest {
 public:
  virtual ~HttpRequest() = default;

  /// From any state to opened, or to closed where method or address are refused. Either way an exchange that is under
  /// way ends without an answer, and its waiter is woken with false. Headers, credentials and the exchange's
  /// own limit are forgotten, time-outs kept. With `async` false `Send` blocks the thread until the exchange has ended.
  virtual bool Open(std::string_view method, std::string_view url, bool async = false) = 0;
  /// Adds a header to the next request, or replaces the one of that name. Refused while closed.
  virtual bool SetRequestHeader(std::string_view name, std::string_view value) = 0;
  /// Sent when the server asks for them (Basic or Digest), and from then on at once. `flags` 0: for the server itself,
  /// anything else is refused. Refused while closed.
  virtual bool SetCredentials(std::string_view user_name, std::string_view password, int flags) = 0;
  /// Limits in milliseconds, of the exchanges that are sent from then on; 0 is no limit, a negative one is refused.
  /// `resolve` bounds the time until the server's name is known (a numeric address is known at once), `connect` the
  /// time from there until the request can be sent, anew for each address that a name has and that is tried, and
  /// `receive` the time from the request sent to the answer complete, redirects and logins included. An exchange that
  /// runs into one of them fails.
  virtual bool SetTimeouts(int resolve, int connect, int send, int receive) = 0;
  /// Bounds the next exchange as a whole, from `Send` to the answer complete, on top of the other limits; forgotten by
  /// the next `Open`. Without it only `SetTimeouts` bounds a `Send` that blocks. Refused while closed, and where the
  /// limit is not positive.
  virtual bool LimitExchange(std::chrono::milliseconds limit) = 0;
  /// Begins an exchange, without a body; the answer before it is forgotten. Refused while closed and while under way.
  /// Asynchronous: true once it is under way, whatever becomes of it; false, and failed, where it cannot begin.
  /// Blocking: true when the answer is there.
  virtual bool Send() = 0;
  /// Waits for the end of the exchange that is under way now, letting the message loop run, and returns its outcome,
  /// whatever began since: true when its answer came, false when it failed, was aborted or gave way to another `Open`.
  /// With none under way it returns at once: true when answered. A `limit` that runs out ends the exchange, which
  /// fails.
  virtual bool WaitForResponse(std::optional<std::chrono::milliseconds> limit = std::nullopt) = 0;

  /// HTTP status of the answer; 0 in every state but answered. Reading changes nothing, here and below.
  virtual int Status() = 0;
  /// Why there is no answer: the cause of the exchange's end for a request that failed, kUnreachable for one whose
  /// address was refused, else kNone.
  virtual HttpFailure Failure() = 0;
  /// The value of a header of the answer, blanks around it removed; empty where it, or the answer, is absent. Names
  /// match in any letter case; the first of several wins. Valid until the next `Open` or `Send`.
  virtual std::string_view GetResponseHeader(std::string_view name) = 0;
  /// The whole header block of the answer, lines ended by CR LF; empty without one.
  virtual std::string GetAllResponseHeaders() = 0;
  virtual std::string ResponseText() = 0;
  /// The body of the answer, shared; empty without one. May be read again.
  virtual FrameBytes ResponseBody() = 0;

  /// Ends the exchange that is under way, which fails, and wakes its waiter. Harmless in any other state.
  virtual void Abort() = 0;
};

/// Passes everything on to another request object; a derived class changes a step or two.
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
  HttpFailure Failure() override { return request_->Failure(); }
  std::string_view GetResponseHeader(std::string_view name) override { return request_->GetResponseHeader(name); }
  std::string GetAllResponseHeaders() override { return request_->GetAllResponseHeaders(); }
  std::string ResponseText() override { return request_->ResponseText(); }
  FrameBytes ResponseBody() override { return request_->ResponseBody(); }
  void Abort() override { request_->Abort(); }

 protected:
  const std::shared_ptr<HttpRequest>& Forwarded() const { return request_; }

 private:
  const std::shared_ptr<HttpRequest> request_;
};

/// Whether a server may be asked: its host in lower case, a numeric address without brackets, and its port.
using ServerRule = std::function<bool(std::string_view host, int port)>;

/// Makes request objects.
class HttpRequestFactory {
 public:
  virtual ~HttpRequestFactory() = default;
  /// A new request. It may outlive the caller's interest: dropping it aborts what is under way.
  virtual std::shared_ptr<HttpRequest> Create() = 0;
};

/// Bounds for every peer, however it behaves.
namespace http_limits {
/// A picture of 64 megapixels at a high quality still fits.
inline constexpr std::size_t kMaxBodyBytes = 64u * 1024 * 1024;
/// Some hundred headers of a usual length; real cameras send a dozen.
inline constexpr std::size_t kMaxHeaderBytes = 256u * 1024;
inline constexpr int kMaxRedirects = 10;  ///< Of the order that browsers and libraries allow.
}  // namespace http_limits

}  // namespace orbelcast
