#pragma once

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <deque>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "fakes/manual_queue.h"

/// A server of any bytes for whoever connects over TCP in this process, and a queue whose time a test moves: no
/// network, no thread, no waiting, so an input gives the same answer each time.
namespace orbelcast::fuzz {

/// Real sockets, looked at without waiting, and hand-set time, which moves on where no socket has anything to say.
class WireQueue final : public EventQueue {
 public:
  explicit WireQueue(fakes::ManualQueue& time) : time_(time) {}

  Nanoseconds Now() const override { return time_.Now(); }
  TimerId ArmTimer(Nanoseconds delay, std::function<void()> callback) override {
    return time_.ArmTimer(delay, std::move(callback));
  }
  void CancelTimer(TimerId id) override { time_.CancelTimer(id); }
  void WatchSocket(int socket, SocketEvents events, std::function<void(SocketEvents)> callback) override {
    watches_[socket] = {events, std::move(callback)};
  }
  void UnwatchSocket(int socket) override { watches_.erase(socket); }
  void Post(std::function<void()> callback) override { time_.Post(std::move(callback)); }
  void HandleDue() override {
    HandleSockets();
    time_.HandleDue();
  }
  void HandleNext() override {
    if (!HandleSockets()) time_.HandleNext();
  }
  Nanoseconds FreshFor() const override { return Nanoseconds::zero(); }

 private:
  using Watch = std::pair<SocketEvents, std::function<void(SocketEvents)>>;

  bool HandleSockets() {
    std::vector<pollfd> polled;
    for (const auto& [socket, watch] : watches_) {
      const int events = (watch.first.readable ? POLLIN : 0) | (watch.first.writable ? POLLOUT : 0);
      polled.push_back({socket, static_cast<short>(events), 0});
    }
    if (poll(polled.data(), polled.size(), 0) <= 0) return false;
    for (const pollfd& each : polled) {
      const auto watch = watches_.find(each.fd);
      if (each.revents == 0 || watch == watches_.end()) continue;
      const bool error = (each.revents & (POLLERR | POLLHUP | POLLNVAL)) != 0;
      const auto callback = watch->second.second;
      callback({error || (each.revents & POLLIN) != 0, error || (each.revents & POLLOUT) != 0});
    }
    return true;
  }

  fakes::ManualQueue& time_;
  std::map<int, Watch> watches_;
};

/// The far end of each connection that is made while it lives. A script is bytes; a NUL and a letter among them is a
/// step:
///
///   n  what follows waits for the next request      u  what follows is sent without one, as soon as can be
///   c  closes the connection                        h  closes it for writing
///   s  says nothing more on it
///
/// A NUL before any other byte is dropped. When the script is at its end the connection is closed.
class WireServer {
 public:
  WireServer(EventQueue& queue, std::string script) : queue_(queue), script_(std::move(script)) { current_ = this; }
  ~WireServer() {
    current_ = nullptr;
    while (!ends_.empty()) Close(ends_.front());
  }
  WireServer(const WireServer&) = delete;
  WireServer& operator=(const WireServer&) = delete;

  const std::vector<std::string>& Requests() const { return requests_; }

  /// The near end of a new connection; what socket(2) is answered with.
  static int Connect() {
    int pair[2];
    if (current_ == nullptr || socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, pair) != 0) return -1;
    const int size = 4 * 1024 * 1024;  // a whole answer fits
    setsockopt(pair[1], SOL_SOCKET, SO_SNDBUF, &size, sizeof size);
    current_->ends_.push_back(pair[1]);
    current_->queue_.WatchSocket(pair[1], {true, false}, [end = pair[1]](EventQueue::SocketEvents) {
      if (current_ != nullptr) current_->Read(end);
    });
    return pair[0];
  }

 private:
  void Read(int end) {
    char bytes[65536];
    const ssize_t count = read(end, bytes, sizeof bytes);
    if (count <= 0) return Close(end);
    std::string& received = received_[end];
    received.append(bytes, static_cast<std::size_t>(count));
    while (received_.contains(end)) {
      const std::size_t length = received.find("\r\n\r\n");
      if (length == std::string::npos) return;
      requests_.push_back(received.substr(0, length + 4));
      received.erase(0, length + 4);
      Answer(end);
    }
  }

  void Answer(int end) {
    if (at_ >= script_.size()) return Close(end);
    while (at_ < script_.size()) {
      const std::size_t step = std::min(script_.find('\0', at_), script_.size());
      // Bytes that do not fit, or come after the client has gone, are lost.
      static_cast<void>(send(end, script_.data() + at_, step - at_, MSG_NOSIGNAL | MSG_DONTWAIT));
      at_ = std::min(step + 2, script_.size());
      switch (step + 1 < script_.size() ? script_[step + 1] : 'n') {
        case 'n':
          return;
        case 'c':
          return Close(end);
        case 'h':
          shutdown(end, SHUT_WR);
          return;
        case 's':
          queue_.UnwatchSocket(end);
          return;
        case 'u':
          return queue_.Post([end] {
            if (current_ != nullptr && std::ranges::count(current_->ends_, end) != 0) current_->Answer(end);
          });
        default:
          break;
      }
    }
  }

  void Close(int end) {
    queue_.UnwatchSocket(end);
    std::erase(ends_, end);
    received_.erase(end);
    close(end);
  }

  static inline WireServer* current_ = nullptr;
  EventQueue& queue_;
  std::string script_;
  std::size_t at_ = 0;
  std::vector<int> ends_;
  std::map<int, std::string> received_;
  std::vector<std::string> requests_;
};

}  // namespace orbelcast::fuzz
