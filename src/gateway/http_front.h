#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "gateway/page.h"
#include "platform/event_queue.h"

namespace orbelcast {

/// A browser's question, as far as the gateway looks at it. Everything is the peer's text.
struct HttpQuestion {
  std::string method;
  std::string target;
  std::string host;
  std::string origin;
  std::string authorization;
};

struct HttpReply {
  unsigned status = 200;
  std::string type = "text/plain; charset=utf-8";
  std::string body{};
  std::vector<std::pair<std::string, std::string>> headers{};
};

/// The two PEM texts by which a server proves itself: its certificate and those that lead from it to one that browsers
/// know, and its private key, without a passphrase.
struct TlsIdentity {
  std::string certificate_chain;
  std::string private_key;
};

/// HTTP and WebSocket for browsers, over TLS where there is an identity, on an event queue: no thread, nothing that
/// blocks.
class HttpFront {
 public:
  /// Connections open at a time; others are closed at once.
  static constexpr std::size_t kMaxConnections = 1024;
  /// Of a request's line and headers. Requests have no body.
  static constexpr std::uint32_t kMaxRequestBytes = 16 * 1024;
  /// Of a message from a page.
  static constexpr std::size_t kMaxLineBytes = 64 * 1024;
  /// Seconds for a request to come, the handshake of TLS before the first included, and for its answer to be taken.
  static constexpr int kMaxRequestSeconds = 20;
  /// Seconds without a sign of life from a page, which is asked for one in between.
  static constexpr int kMaxSilentSeconds = 45;

  struct Handlers {
    std::function<HttpReply(const HttpQuestion& question)> answer;
    /// Why a page gets no session; nothing where it gets one.
    std::function<std::optional<HttpReply>(const HttpQuestion& question)> refuse;
    /// A page is connected.
    std::function<std::shared_ptr<PageUser>(std::shared_ptr<Page> page)> open;
  };

  /// `queue` outlives it. Throws std::runtime_error where the identity cannot be used.
  HttpFront(EventQueue& queue, Handlers handlers, const std::optional<TlsIdentity>& identity);
  /// Closes every connection.
  ~HttpFront();  // NOLINT(bugprone-exception-escape): what escapes is a lack of memory, which ends the program.
  HttpFront(const HttpFront&) = delete;
  HttpFront& operator=(const HttpFront&) = delete;

  /// Listens at that numeric address; port 0 is one that the system picks. Returns the port. Throws std::runtime_error.
  int Listen(const std::string& address, int port);

  /// Connections from now on get that identity. Throws std::runtime_error where it cannot be used; the one before stays
  /// then. Only where there is one already.
  void Renew(const TlsIdentity& identity);

 private:
  class Server;
  const std::shared_ptr<Server> server_;
};

}  // namespace orbelcast
