#include "picture_server.h"

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <stdexcept>
#include <utility>

// After <utility>, which they need and do not include.
#include <boost/asio/awaitable.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/read_until.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/asio/write.hpp>

namespace orbelcast::bench {

namespace {

namespace asio = boost::asio;
using asio::ip::tcp;
using Clock = std::chrono::steady_clock;

constexpr std::size_t kMostRequestBytes = 64 * 1024;

/// The answers, and the time at which each of them is the newest.
class Camera {
 public:
  Camera(const std::vector<FrameBytes>& pictures, double rate, Clock::time_point began) : rate_(rate), began_(began) {
    for (const FrameBytes& picture : pictures) {
      const std::string head =
          "Content-Type: image/jpeg\r\nContent-Length: " + std::to_string(picture.Size()) + "\r\n\r\n";
      const std::string body(picture.Bytes().begin(), picture.Bytes().end());
      answers_.push_back("HTTP/1.1 200 OK\r\n" + head + body);
      parts_.push_back("--next\r\n" + head + body + "\r\n");
    }
  }

  std::uint64_t Newest() const {
    return static_cast<std::uint64_t>(std::chrono::duration<double>(Clock::now() - began_).count() * rate_);
  }
  Clock::time_point TakenAt(std::uint64_t number) const {
    return began_ + std::chrono::duration_cast<Clock::duration>(
                        std::chrono::duration<double>(static_cast<double>(number) / rate_));
  }
  const std::string& Answer(std::uint64_t number) const { return answers_[number % answers_.size()]; }
  const std::string& Part(std::uint64_t number) const { return parts_[number % parts_.size()]; }

 private:
  double rate_;
  Clock::time_point began_;
  std::vector<std::string> answers_;
  std::vector<std::string> parts_;
};

asio::awaitable<void> Push(tcp::socket& socket, const Camera& camera) {
  const std::string head = "HTTP/1.1 200 OK\r\nContent-Type: multipart/x-mixed-replace; boundary=next\r\n\r\n";
  co_await asio::async_write(socket, asio::buffer(head), asio::use_awaitable);
  asio::steady_timer taken(socket.get_executor());
  for (std::uint64_t number = camera.Newest();; number = std::max(number + 1, camera.Newest())) {
    taken.expires_at(camera.TakenAt(number));
    co_await taken.async_wait(asio::use_awaitable);
    co_await asio::async_write(socket, asio::buffer(camera.Part(number)), asio::use_awaitable);
  }
}

// Ends by an exception, when the client goes.
asio::awaitable<void> Serve(tcp::socket socket, const Camera& camera) {
  std::string received;
  for (;;) {
    const std::size_t size = co_await asio::async_read_until(socket, asio::dynamic_buffer(received, kMostRequestBytes),
                                                             "\r\n\r\n", asio::use_awaitable);
    if (received.starts_with("GET /stream ")) co_await Push(socket, camera);
    received.erase(0, size);
    co_await asio::async_write(socket, asio::buffer(camera.Answer(camera.Newest())), asio::use_awaitable);
  }
}

asio::awaitable<void> Accept(tcp::acceptor& acceptor, const Camera& camera) {
  for (;;) {
    tcp::socket socket = co_await acceptor.async_accept(asio::use_awaitable);
    socket.set_option(tcp::no_delay(true));
    co_spawn(acceptor.get_executor(), Serve(std::move(socket), camera), asio::detached);
  }
}

}  // namespace

PictureServer::PictureServer(const std::vector<FrameBytes>& pictures, double rate) {
  asio::io_context context(1);
  tcp::acceptor acceptor(context, tcp::endpoint(asio::ip::address_v4::loopback(), 0));
  acceptor.listen(asio::socket_base::max_listen_connections);
  port_ = acceptor.local_endpoint().port();
  context.notify_fork(asio::io_context::fork_prepare);
  process_ = fork();
  if (process_ < 0) throw std::runtime_error("cannot fork");
  if (process_ > 0) {
    context.notify_fork(asio::io_context::fork_parent);
    return;
  }
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  context.notify_fork(asio::io_context::fork_child);
  const Camera camera(pictures, rate, began_);
  co_spawn(context, Accept(acceptor, camera), asio::detached);
  context.run();
  _exit(1);
}

PictureServer::~PictureServer() {
  kill(process_, SIGKILL);
  waitpid(process_, nullptr, 0);
}

}  // namespace orbelcast::bench
