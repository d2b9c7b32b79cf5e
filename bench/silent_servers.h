#pragma once

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <stdexcept>
#include <string>

namespace orbelcast::bench {

/// Two servers on 127.0.0.1 that do not answer: one lets its clients connect and says nothing, the other has as many
/// waiting as it takes, so that no connection comes about.
class SilentServers {
 public:
  SilentServers() {
    Listen(listeners_[0], SOMAXCONN);
    Listen(listeners_[1], 0);
    for (int& client : waiting_) {
      client = socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
      const sockaddr_in address = AddressOf(listeners_[1]);
      connect(client, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    }
  }
  SilentServers(const SilentServers&) = delete;
  SilentServers& operator=(const SilentServers&) = delete;
  ~SilentServers() {
    for (const int each : listeners_) close(each);
    for (const int each : waiting_) close(each);
  }

  /// The address of one of them, in turn.
  std::string Url(int turn) const {
    const sockaddr_in address = AddressOf(listeners_[static_cast<std::size_t>(turn) % listeners_.size()]);
    return "http://127.0.0.1:" + std::to_string(ntohs(address.sin_port)) + "/picture";
  }

 private:
  static void Listen(int& listener, int backlog) {
    listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        listen(listener, backlog) != 0) {
      throw std::runtime_error("cannot listen");
    }
  }
  static sockaddr_in AddressOf(int listener) {
    sockaddr_in address{};
    socklen_t size = sizeof address;
    getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size);
    return address;
  }

  std::array<int, 2> listeners_{};
  std::array<int, 4> waiting_{};
};

}  // namespace orbelcast::bench
