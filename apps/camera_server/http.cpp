#include "camera_server/http.h"

#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <map>

#include "camera_server/settings.h"
#include "common/http_status.h"
#include "toolkit/ascii.h"

namespace orbelcast::camera_server {

namespace {

constexpr int kTooLarge = 413;
constexpr int kHeadTooLarge = 431;
constexpr int kNotImplemented = 501;
constexpr int kVersionNotSupported = 505;

bool IsToken(std::string_view text) {
  constexpr std::string_view kLetters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789!#$%&'*+-.^_`|~";
  return !text.empty() && text.find_first_not_of(kLetters) == std::string_view::npos;
}

std::string_view WithoutAuthority(std::string_view target) {
  constexpr std::string_view kScheme = "http://";
  if (!EqualIgnoringCase(target.substr(0, kScheme.size()), kScheme)) return target;
  const std::size_t slash = target.find('/', kScheme.size());
  return slash == std::string_view::npos ? "/" : target.substr(slash);
}

/// 0, or the status to refuse the line with.
int ParseRequestLine(std::string_view line, Request& request) {
  const std::size_t first = line.find(' ');
  const std::size_t last = line.rfind(' ');
  if (first == std::string_view::npos || first == last) return kBadRequest;
  const std::string_view version = line.substr(last + 1);
  const std::string_view target = WithoutAuthority(line.substr(first + 1, last - first - 1));
  if (!IsToken(line.substr(0, first)) || !version.starts_with("HTTP/")) return kBadRequest;
  if (!target.starts_with('/') || HasControlCharacter(target)) return kBadRequest;
  if (version != "HTTP/1.1" && version != "HTTP/1.0") return kVersionNotSupported;
  request.method = line.substr(0, first);
  request.target = target;
  request.is_http_1_1 = version == "HTTP/1.1";
  return 0;
}

int ParseHeaderLine(std::string_view line, Request& request) {
  const std::size_t colon = line.find(':');
  if (colon == std::string_view::npos || !IsToken(line.substr(0, colon))) return kBadRequest;
  if (request.headers.size() >= kMaxHeaderLines) return kHeadTooLarge;
  request.headers.emplace_back(line.substr(0, colon), Trimmed(line.substr(colon + 1)));
  return 0;
}

int ReadBodySize(Request& request) {
  if (!request.Header("Transfer-Encoding").empty()) return kNotImplemented;
  const std::string_view text = request.Header("Content-Length");
  if (text.empty()) return 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), request.body_bytes);
  if (error == std::errc::result_out_of_range) return kTooLarge;
  if (error != std::errc() || end != text.data() + text.size()) return kBadRequest;
  return request.body_bytes > kMaxRequestBytes ? kTooLarge : 0;
}

using Clock = std::chrono::steady_clock;

constexpr Connection::TimePoint kNever = Connection::TimePoint::max();

int MillisecondsUntil(Connection::TimePoint deadline) {
  if (deadline == kNever) return -1;
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
  return static_cast<int>(std::clamp<long long>(left, 0, 3'600'000));
}

bool WouldBlock() {
  return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
}

}  // namespace

std::string_view TakeLine(std::string_view& text) {
  const std::size_t end = std::min(text.find('\n'), text.size());
  std::string_view line = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

std::string_view Request::Header(std::string_view name) const {
  const auto found = std::ranges::find_if(headers, [&](auto& line) { return EqualIgnoringCase(line.first, name); });
  return found == headers.end() ? std::string_view() : std::string_view(found->second);
}

std::string_view Request::Path() const {
  return std::string_view(target).substr(0, target.find('?'));
}

std::variant<Request, int> ParseRequest(std::string_view head) {
  Request request;
  if (const int refused = ParseRequestLine(TakeLine(head), request)) return refused;
  for (std::string_view line = TakeLine(head); !line.empty(); line = TakeLine(head)) {
    if (const int refused = ParseHeaderLine(line, request)) return refused;
  }
  if (const int refused = ReadBodySize(request)) return refused;
  const std::string_view connection = request.Header("Connection");
  request.keep_alive =
      request.is_http_1_1 ? !EqualIgnoringCase(connection, "close") : EqualIgnoringCase(connection, "keep-alive");
  return request;
}

std::optional<std::size_t> FindEndOfHead(std::string_view bytes) {
  // A line may end in a bare line feed, so that somebody can type a request by hand.
  for (std::size_t at = bytes.find('\n'); at != std::string_view::npos; at = bytes.find('\n', at + 1)) {
    const std::string_view rest = bytes.substr(at + 1);
    if (rest.starts_with('\n')) return at + 2;
    if (rest.starts_with("\r\n")) return at + 3;
  }
  return std::nullopt;
}

Response TextResponse(int status, const std::string& text) {
  return {.status = status, .headers = {{"Content-Type", kPlainText}}, .body = MakeBody(text + "\r\n")};
}

Response FreshResponse(const std::string& type, Body body) {
  return {.headers = {{"Content-Type", type}, {"Cache-Control", "no-store"}}, .body = std::move(body)};
}

std::string StatusText(int status) {
  static const std::map<int, const char*> phrases{{200, "OK"},
                                                  {kBadRequest, "Bad Request"},
                                                  {kUnauthorized, "Unauthorized"},
                                                  {kForbidden, "Forbidden"},
                                                  {kNotFound, "Not Found"},
                                                  {405, "Method Not Allowed"},
                                                  {408, "Request Timeout"},
                                                  {kTooLarge, "Content Too Large"},
                                                  {kHeadTooLarge, "Request Header Fields Too Large"},
                                                  {500, "Internal Server Error"},
                                                  {kNotImplemented, "Not Implemented"},
                                                  {503, "Service Unavailable"},
                                                  {kVersionNotSupported, "HTTP Version Not Supported"},
                                                  {kVideoNotFound, "Video Not Found"}};
  const auto found = phrases.find(status);
  return std::to_string(status) + " " + (found == phrases.end() ? "Status" : found->second);
}

std::string HeadLines(const Response& response) {
  std::string lines = "HTTP/1.1 " + StatusText(response.status) + "\r\nServer: " + kServerName +
                      "\r\nDate: " + HttpDate(WallClock::now()) + "\r\n";
  for (const auto& [name, value] : response.headers) lines.append(name).append(": ").append(value).append("\r\n");
  return lines;
}

std::string HeadBytes(const Response& response, bool keep_alive) {
  return HeadLines(response) + "Content-Length: " + std::to_string(response.body->size()) +
         "\r\nConnection: " + (keep_alive ? "keep-alive" : "close") + "\r\n\r\n";
}

bool SendResponse(Connection& connection, const Request& request, const Response& response) {
  const std::string head = HeadBytes(response, request.keep_alive);
  const bool has_body = request.method != "HEAD" && response.status != 204 && response.status != 304;
  if (!has_body) return connection.Send(head) && request.keep_alive;
  return connection.Send(head, Connection::More::kFollows) && connection.Send(*response.body) && request.keep_alive;
}

Connection::Connection(int socket, int stop_descriptor) : socket_(socket), stop_descriptor_(stop_descriptor) {
  fcntl(socket_, F_SETFL, fcntl(socket_, F_GETFL) | O_NONBLOCK);
  const int on = 1;
  setsockopt(socket_, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
}

Connection::~Connection() {
  Close();
}

Connection::Woken Connection::Wait(short events, TimePoint deadline) const {
  while (true) {
    std::array<pollfd, 2> polled{pollfd{socket_, events, 0}, pollfd{stop_descriptor_, POLLIN, 0}};
    const int ready = poll(polled.data(), polled.size(), MillisecondsUntil(deadline));
    if (ready < 0 && errno != EINTR) return Woken::kStopped;
    if (polled[1].revents != 0) return Woken::kStopped;
    if (ready > 0) return Woken::kReady;
    if (Clock::now() >= deadline) return Woken::kTimeOut;
  }
}

Connection::Received Connection::Receive(std::string& bytes, TimePoint deadline) {
  std::array<char, 8192> piece;
  while (socket_ >= 0) {
    const Woken woken = Wait(POLLIN, deadline);
    if (woken == Woken::kTimeOut) return Received::kTimeOut;
    if (woken == Woken::kStopped) break;
    const ssize_t count = recv(socket_, piece.data(), piece.size(), 0);
    if (count > 0) {
      bytes.append(piece.data(), static_cast<std::size_t>(count));
      return Received::kBytes;
    }
    if (count == 0 || !WouldBlock()) break;
  }
  return Received::kClosed;
}

bool Connection::Send(std::string_view bytes, More more) {
  const int flags = MSG_NOSIGNAL | (more == More::kFollows ? MSG_MORE : 0);
  while (!bytes.empty()) {
    if (socket_ < 0) return false;
    const ssize_t count = send(socket_, bytes.data(), bytes.size(), flags);
    if (count >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(count));
    } else if (!WouldBlock() || Wait(POLLOUT, Clock::now() + kSendStallTime) != Woken::kReady) {
      return false;
    }
  }
  return true;
}

bool Connection::Pause(std::chrono::milliseconds time) {
  // With no event asked for, only a reset wakes: a client that has closed its sending side still wants its answer.
  return socket_ >= 0 && Wait(0, Clock::now() + time) == Woken::kTimeOut;
}

void Connection::WaitUntilGone() {
  if (socket_ >= 0) Wait(POLLRDHUP, kNever);
}

void Connection::CloseGently() {
  if (socket_ < 0) return;
  shutdown(socket_, SHUT_WR);
  const TimePoint deadline = Clock::now() + kLingerTime;
  std::string unread;
  while (Receive(unread, deadline) == Received::kBytes && unread.size() <= kMaxRequestBytes) {
  }
  Close();
}

void Connection::Close() {
  if (socket_ >= 0) close(socket_);
  socket_ = -1;
}

void Connection::Reset() {
  if (socket_ < 0) return;
  const linger at_once{.l_onoff = 1, .l_linger = 0};
  setsockopt(socket_, SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once);
  Close();
}

}  // namespace orbelcast::camera_server
