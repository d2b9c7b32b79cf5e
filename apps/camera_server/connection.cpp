#include "camera_server/connection.h"

#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

#include "camera_server/bounds.h"

namespace orbelcast::camera_server {

namespace {

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
