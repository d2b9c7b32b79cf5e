#include "camera_server/http_server.h"

#include <arpa/inet.h>
#include <netdb.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <exception>
#include <iostream>
#include <list>
#include <memory>
#include <optional>
#include <stdexcept>
#include <system_error>
#include <thread>
#include <variant>

#include "adapters/posix/descriptor.h"
#include "camera_server/bounds.h"

namespace orbelcast::camera_server {

namespace {

using Clock = std::chrono::steady_clock;

/// The requests of one connection, one after the other; what came behind one stays for the next.
class RequestReader {
 public:
  explicit RequestReader(Connection& connection) : connection_(connection) {}

  /// A request, a status to refuse the client with, or nothing when it has gone or stayed silent.
  std::optional<std::variant<Request, int>> Next() {
    head_.clear();
    Connection::TimePoint deadline = Clock::now() + (bytes_.empty() ? kIdleTime : kRequestTime);
    std::optional<std::size_t> end;
    while (!(end = FindEndOfHead(bytes_))) {
      if (bytes_.size() > kMaxRequestBytes) return 431;
      const bool was_idle = bytes_.empty();
      const Connection::Received received = connection_.Receive(bytes_, deadline);
      if (received == Connection::Received::kClosed || (was_idle && received != Connection::Received::kBytes))
        return {};
      if (received == Connection::Received::kTimeOut) return 408;
      if (was_idle) deadline = Clock::now() + kRequestTime;
      DropEmptyLines();
    }
    if (*end > kMaxRequestBytes) return 431;
    head_.assign(bytes_, 0, *end);
    bytes_.erase(0, *end);
    std::variant<Request, int> request = ParseRequest(head_);
    if (const auto* good = std::get_if<Request>(&request); good && !DropBody(good->body_bytes)) return {};
    return request;
  }

  /// The bytes of what Next gave, empty where the client had not sent all of them.
  const std::string& Head() const { return head_; }

 private:
  // Some clients end a request with an empty line too many.
  void DropEmptyLines() { bytes_.erase(0, bytes_.find_first_not_of("\r\n")); }

  bool DropBody(std::size_t count) {
    const Connection::TimePoint deadline = Clock::now() + kRequestTime;
    while (bytes_.size() < count) {
      if (connection_.Receive(bytes_, deadline) != Connection::Received::kBytes) return false;
    }
    bytes_.erase(0, count);
    return true;
  }

  Connection& connection_;
  std::string bytes_;
  std::string head_;
};

/// "127.0.0.1" or "::1"; with the port "127.0.0.1:8080" or "[::1]:8080".
std::string NumericAddress(const sockaddr_storage& end, socklen_t size, bool with_port) {
  std::array<char, NI_MAXHOST> host{};
  std::array<char, NI_MAXSERV> port{};
  if (getnameinfo(reinterpret_cast<const sockaddr*>(&end), size, host.data(), host.size(), port.data(), port.size(),
                  NI_NUMERICHOST | NI_NUMERICSERV) != 0)
    return "unknown";
  if (!with_port) return host.data();
  return (end.ss_family == AF_INET6 ? "[" + std::string(host.data()) + "]" : host.data()) + ":" + port.data();
}

/// This server's end of a connection, or where it listens, with the port.
std::string OwnAddress(int socket) {
  sockaddr_storage own{};
  socklen_t size = sizeof own;
  getsockname(socket, reinterpret_cast<sockaddr*>(&own), &size);
  return NumericAddress(own, size, true);
}

void Refuse(Connection& connection, int status) {
  const Response response = TextResponse(status, StatusText(status));
  connection.Send(HeadBytes(response, false) + *response.body);
  connection.CloseGently();
}

/// A socket that listens.
int Listen(const std::string& address, int port) {
  addrinfo wanted{};
  wanted.ai_flags = AI_NUMERICHOST | AI_PASSIVE;
  wanted.ai_socktype = SOCK_STREAM;
  addrinfo* found = nullptr;
  if (getaddrinfo(address.c_str(), std::to_string(port).c_str(), &wanted, &found) != 0) {
    throw std::runtime_error("'" + address + "' is not a numeric network address, such as 127.0.0.1 or ::1");
  }
  const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> owned(found, freeaddrinfo);
  const int listener = socket(found->ai_family, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const int on = 1;
  setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  if (bind(listener, found->ai_addr, found->ai_addrlen) != 0 || listen(listener, SOMAXCONN) != 0) {
    throw std::runtime_error("cannot listen on " + address + " port " + std::to_string(port) + ": " +
                             std::generic_category().message(errno));
  }
  return listener;
}

class HttpServer {
 public:
  /// `listener` becomes the server's own.
  HttpServer(Router& router, int listener) : router_(router), listener_(listener) {}

  std::string Url() const { return "http://" + OwnAddress(listener_.Number()) + "/"; }

  void Run(int stop_descriptor) {
    while (true) {
      std::array<pollfd, 2> polled{pollfd{listener_.Number(), POLLIN, 0}, pollfd{stop_descriptor, POLLIN, 0}};
      if (poll(polled.data(), polled.size(), -1) < 0 && errno != EINTR) break;
      if (polled[1].revents != 0) break;
      if (polled[0].revents != 0) Accept();
    }
    eventfd_write(stop_.Number(), 1);
    workers_.clear();
  }

 private:
  struct Worker {
    std::atomic<bool> done = false;
    std::jthread thread;
  };

  void Accept() {
    sockaddr_storage peer{};
    socklen_t size = sizeof peer;
    const int socket = accept4(listener_.Number(), reinterpret_cast<sockaddr*>(&peer), &size, SOCK_CLOEXEC);
    if (socket < 0) {
      // Out of descriptors: without a pause this would spin until one is free.
      if (errno == EMFILE || errno == ENFILE) std::this_thread::sleep_for(std::chrono::milliseconds(20));
      return;
    }
    auto connection = std::make_unique<Connection>(socket, stop_.Number());
    workers_.remove_if([](const Worker& worker) { return worker.done.load(); });
    if (workers_.size() >= kMaxConnections + kMaxRefusals) return;
    const bool is_refused = workers_.size() >= kMaxConnections;
    const std::string address = NumericAddress(peer, size, false);
    const Client client{
        .id = next_client_++,
        .address = address,
        .reached = OwnAddress(socket),
        .is_local = address == "::1" || address.starts_with("127.") || address.starts_with("::ffff:127.")};
    Worker& worker = workers_.emplace_back();
    try {
      worker.thread = std::jthread([this, &worker, connection = std::move(connection), client, is_refused]() mutable {
        Serve(*connection, client, is_refused);
        connection.reset();
        worker.done = true;
      });
    } catch (const std::system_error&) {  // no further thread: this client is not served
      workers_.pop_back();
    }
  }

  void Serve(Connection& connection, const Client& client, bool is_refused) {
    try {
      if (is_refused) return Refuse(connection, 503);
      AnswerRequests(connection, client);
    } catch (const std::exception& error) {  // such as memory running out: this client's trouble alone
      std::cerr << "orbelcast-camera-server: a client was dropped: " + std::string(error.what()) + "\n";
    }
    router_.Gone(client);
  }

  void AnswerRequests(Connection& connection, const Client& client) {
    RequestReader reader(connection);
    while (const auto next = reader.Next()) {
      if (!reader.Head().empty()) router_.Heard(reader.Head(), client);
      if (const int* status = std::get_if<int>(&*next)) return Refuse(connection, *status);
      const auto& request = std::get<Request>(*next);
      const Response response = AnswerOf(request, client);
      if (!response.delivery(connection, request, response)) break;
    }
    connection.CloseGently();
  }

  Response AnswerOf(const Request& request, const Client& client) {
    if (request.method != "GET" && request.method != "HEAD") {
      Response response = TextResponse(405, "This server answers GET and HEAD.");
      response.headers.emplace_back("Allow", "GET, HEAD");
      return response;
    }
    try {
      return router_.Answer(request, client);
    } catch (const std::exception& error) {  // such as a picture's file that has gone
      std::cerr << "orbelcast-camera-server: " + std::string(error.what()) + "\n";
      return TextResponse(500, error.what());
    }
  }

  Router& router_;
  const Descriptor listener_;
  const Descriptor stop_{eventfd(0, EFD_CLOEXEC)};  // watched by all connections
  std::uint64_t next_client_ = 1;
  std::list<Worker> workers_;
};

}  // namespace

void ServeHttp(Router& router, const std::string& address, int port, int stop_descriptor) {
  HttpServer server(router, Listen(address, port));
  std::cout << "listening on " << server.Url() << std::endl;  // flushed: somebody waits for the line
  if (!std::cout)
    throw std::runtime_error("cannot write to standard output; is the disk full, or has its reader gone?");
  server.Run(stop_descriptor);
}

}  // namespace orbelcast::camera_server
