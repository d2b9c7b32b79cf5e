#include "camera_server/http_server.h"

#include <arpa/inet.h>
#include <netdb.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <exception>
#include <iostream>
#include <memory>
#include <optional>
#include <stdexcept>
#include <system_error>
#include <utility>
#include <variant>

#include "camera_server/bounds.h"
#include "camera_server/time_text.h"

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

bool IsLoopback(const sockaddr_storage& peer) {
  if (peer.ss_family == AF_INET) {
    return (ntohl(reinterpret_cast<const sockaddr_in&>(peer).sin_addr.s_addr) >> 24) == 127;
  }
  if (peer.ss_family != AF_INET6) return false;
  const in6_addr& address = reinterpret_cast<const sockaddr_in6&>(peer).sin6_addr;
  return IN6_IS_ADDR_LOOPBACK(&address) || (IN6_IS_ADDR_V4MAPPED(&address) && address.s6_addr[12] == 127);
}

std::string NumericAddress(const sockaddr_storage& peer, socklen_t size) {
  std::array<char, NI_MAXHOST> text{};
  const int failed =
      getnameinfo(reinterpret_cast<const sockaddr*>(&peer), size, text.data(), text.size(), nullptr, 0, NI_NUMERICHOST);
  return failed == 0 ? text.data() : "unknown";
}

/// The end of the connection that is ours: "127.0.0.1:8080", "[::1]:8080".
std::string ReachedAddress(int socket, int port) {
  sockaddr_storage local{};
  socklen_t size = sizeof local;
  getsockname(socket, reinterpret_cast<sockaddr*>(&local), &size);
  const std::string host = NumericAddress(local, size);
  return (host.find(':') == std::string::npos ? host : "[" + host + "]") + ":" + std::to_string(port);
}

std::string Reason() {
  return std::generic_category().message(errno);
}

}  // namespace

bool SendResponse(Connection& connection, const Request& request, const Response& response) {
  const std::string head = HeadBytes(response, request.keep_alive);
  if (!HasBody(request, response)) return connection.Send(head) && request.keep_alive;
  return connection.Send(head, Connection::More::kFollows) && connection.Send(*response.body) && request.keep_alive;
}

HttpServer::HttpServer(std::string name, RequestHandler& handler)
    : name_(std::move(name)), handler_(handler), stop_(eventfd(0, EFD_CLOEXEC)) {}

HttpServer::~HttpServer() {
  if (listener_ >= 0) close(listener_);
  close(stop_);
}

void HttpServer::Listen(const std::string& address, int port) {
  addrinfo wanted{};
  wanted.ai_flags = AI_NUMERICHOST | AI_PASSIVE;
  wanted.ai_socktype = SOCK_STREAM;
  addrinfo* found = nullptr;
  if (getaddrinfo(address.c_str(), std::to_string(port).c_str(), &wanted, &found) != 0) {
    throw std::runtime_error("'" + address + "' is not a numeric network address, such as 127.0.0.1 or ::1");
  }
  const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> owned(found, freeaddrinfo);
  const std::string place = address + " port " + std::to_string(port);

  listener_ = socket(found->ai_family, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const int on = 1;
  if (listener_ >= 0) setsockopt(listener_, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  if (listener_ < 0 || bind(listener_, found->ai_addr, found->ai_addrlen) != 0 || listen(listener_, SOMAXCONN) != 0) {
    throw std::runtime_error("cannot listen on " + place + ": " + Reason());
  }
  sockaddr_storage bound{};
  socklen_t size = sizeof bound;
  getsockname(listener_, reinterpret_cast<sockaddr*>(&bound), &size);
  port_ = ntohs(bound.ss_family == AF_INET6 ? reinterpret_cast<const sockaddr_in6&>(bound).sin6_port
                                            : reinterpret_cast<const sockaddr_in&>(bound).sin_port);
  host_ = bound.ss_family == AF_INET6 ? "[" + address + "]" : address;
}

std::string HttpServer::Url() const {
  return "http://" + host_ + ":" + std::to_string(port_) + "/";
}

void HttpServer::Run(int stop_descriptor) {
  while (true) {
    std::array<pollfd, 2> polled{pollfd{listener_, POLLIN, 0}, pollfd{stop_descriptor, POLLIN, 0}};
    if (poll(polled.data(), polled.size(), -1) < 0 && errno != EINTR) break;
    if (polled[1].revents != 0) break;
    if (polled[0].revents != 0) Accept();
  }
  eventfd_write(stop_, 1);
  for (Worker& worker : workers_) worker.thread.join();
  workers_.clear();
}

void HttpServer::Accept() {
  sockaddr_storage peer{};
  socklen_t size = sizeof peer;
  const int socket = accept4(listener_, reinterpret_cast<sockaddr*>(&peer), &size, SOCK_CLOEXEC);
  if (socket < 0) {
    // Out of descriptors: without a pause this would spin until one is free.
    if (errno == EMFILE || errno == ENFILE) std::this_thread::sleep_for(std::chrono::milliseconds(20));
    return;
  }
  ForgetEnded();
  if (workers_.size() >= kMaxConnections + kMaxRefusals) {
    close(socket);
    return;
  }
  const bool is_refused = workers_.size() >= kMaxConnections;
  const Client client{.id = next_client_++,
                      .address = NumericAddress(peer, size),
                      .reached = ReachedAddress(socket, port_),
                      .is_local = IsLoopback(peer)};
  Worker& worker = workers_.emplace_back();
  try {
    worker.thread = std::thread([this, &worker, socket, client, is_refused] {
      Serve(socket, client, is_refused);
      worker.done = true;
    });
  } catch (const std::system_error&) {  // no further thread: this client is not served
    workers_.pop_back();
    close(socket);
  }
}

void HttpServer::ForgetEnded() {
  workers_.remove_if([](Worker& worker) {
    if (!worker.done) return false;
    worker.thread.join();
    return true;
  });
}

void HttpServer::Serve(int socket, const Client& client, bool is_refused) {
  Connection connection(socket, stop_);
  try {
    if (is_refused) return Refuse(connection, 503);
    AnswerRequests(connection, client);
  } catch (const std::exception& error) {  // such as memory running out: this client's trouble alone
    std::cerr << "orbelcast-camera-server: a client was dropped: " + std::string(error.what()) + "\n";
  }
  handler_.Gone(client);
}

void HttpServer::AnswerRequests(Connection& connection, const Client& client) {
  RequestReader reader(connection);
  while (const auto next = reader.Next()) {
    if (!reader.Head().empty()) handler_.Heard(reader.Head(), client);
    if (const int* status = std::get_if<int>(&*next)) return Refuse(connection, *status);
    if (!AnswerRequest(connection, std::get<Request>(*next), client)) break;
  }
  connection.CloseGently();
}

bool HttpServer::AnswerRequest(Connection& connection, const Request& request, const Client& client) {
  Response response = AnswerOf(request, client);
  Complete(response);
  return response.delivery ? response.delivery(connection, request, response)
                           : SendResponse(connection, request, response);
}

Response HttpServer::AnswerOf(const Request& request, const Client& client) {
  if (request.method != "GET" && request.method != "HEAD") {
    Response response = TextResponse(405, "This server answers GET and HEAD.");
    response.headers.emplace_back("Allow", "GET, HEAD");
    return response;
  }
  try {
    return handler_.Answer(request, client);
  } catch (const std::exception& error) {  // such as a picture's file that has gone
    std::cerr << "orbelcast-camera-server: " + std::string(error.what()) + "\n";
    return TextResponse(500, error.what());
  }
}

void HttpServer::Complete(Response& response) const {
  response.headers.insert(response.headers.begin(), {{"Server", name_}, {"Date", HttpDate(WallClock::now())}});
}

void HttpServer::Refuse(Connection& connection, int status) const {
  Response response = TextResponse(status, StatusText(status));
  Complete(response);
  connection.Send(HeadBytes(response, false) + *response.body);
  connection.CloseGently();
}

}  // namespace orbelcast::camera_server
