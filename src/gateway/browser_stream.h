#pragma once

#include <boost/asio/basic_stream_socket.hpp>
#include <boost/asio/buffer.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/ssl/context.hpp>
#include <boost/asio/ssl/stream.hpp>
#include <boost/beast/core/role.hpp>

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "platform/event_queue.h"

/// The streams below HTTP and WebSocket. Their members have the names by which Boost.Asio and Boost.Beast call them.
///
/// The function that is called when a step has ended is of one type here, whatever the caller's: so the layers above
/// are compiled once, for a connection with TLS and without.
namespace orbelcast {

using StreamDone = std::function<void(boost::system::error_code, std::size_t)>;

/// A handler that can only be moved, as one that can be copied; it is called once.
template <class Handler>
StreamDone Shared(Handler&& handler) {
  return [kept = std::make_shared<std::decay_t<Handler>>(std::forward<Handler>(handler))](
             boost::system::error_code error, std::size_t bytes) {
    auto called = std::move(*kept);
    called(error, bytes);
  };
}

/// A socket that knows what it waits for.
class WatchedSocket {
 public:
  using Socket = boost::asio::basic_stream_socket<boost::asio::ip::tcp, boost::asio::io_context::executor_type>;
  using executor_type = Socket::executor_type;  // NOLINT(readability-identifier-naming): Boost.Asio's name
  using lowest_layer_type = Socket;             // NOLINT(readability-identifier-naming): Boost.Asio's name

  /// `changed` is called when what it waits for may be something else.
  WatchedSocket(Socket socket, std::function<void()> changed)
      : socket_(std::move(socket)), changed_(std::move(changed)) {}

  executor_type get_executor() { return socket_.get_executor(); }
  Socket& lowest_layer() { return socket_; }
  const Socket& lowest_layer() const { return socket_; }
  EventQueue::SocketEvents Awaited() const { return awaited_; }

  template <class Buffers, class Handler>
  void async_read_some(const Buffers& buffers, Handler&& handler) {
    Read(*boost::asio::buffer_sequence_begin(buffers), Shared(std::forward<Handler>(handler)));
  }
  template <class Buffers, class Handler>
  void async_write_some(const Buffers& buffers, Handler&& handler) {
    Write({boost::asio::buffer_sequence_begin(buffers), boost::asio::buffer_sequence_end(buffers)},
          Shared(std::forward<Handler>(handler)));
  }

  void Read(boost::asio::mutable_buffer buffer, StreamDone done) {
    Await(awaited_.readable, true);
    socket_.async_read_some(buffer, [this, done = std::move(done)](boost::system::error_code error, std::size_t bytes) {
      Await(awaited_.readable, false);
      done(error, bytes);
    });
  }
  void Write(std::vector<boost::asio::const_buffer> pieces, StreamDone done) {
    Await(awaited_.writable, true);
    socket_.async_write_some(pieces,
                             [this, done = std::move(done)](boost::system::error_code error, std::size_t bytes) {
                               Await(awaited_.writable, false);
                               done(error, bytes);
                             });
  }

 private:
  void Await(bool& event, bool awaited) {
    event = awaited;
    changed_();
  }

  Socket socket_;
  const std::function<void()> changed_;
  EventQueue::SocketEvents awaited_{.readable = false, .writable = false};
};

/// A browser's connection: its bytes as they are, or in TLS.
class BrowserStream {
 public:
  using executor_type = WatchedSocket::executor_type;  // NOLINT(readability-identifier-naming): Boost.Asio's name

  /// `tls`, which outlives it, may be null: then bytes go as they are. `changed` as WatchedSocket's.
  BrowserStream(WatchedSocket::Socket socket, boost::asio::ssl::context* tls, std::function<void()> changed)
      : socket_(std::move(socket), std::move(changed)) {
    if (tls == nullptr) return;
    tls_.emplace(socket_, *tls);
    record_.resize(kRecordBytes);
  }

  executor_type get_executor() { return socket_.get_executor(); }
  /// The system's socket.
  WatchedSocket::Socket& next_layer() { return socket_.lowest_layer(); }
  const WatchedSocket::Socket& next_layer() const { return socket_.lowest_layer(); }
  EventQueue::SocketEvents Awaited() const { return socket_.Awaited(); }

  /// Calls `done` when bytes can be sent and received.
  void Handshake(std::function<void(boost::system::error_code)> done) {
    if (tls_) return tls_->async_handshake(boost::asio::ssl::stream_base::server, std::move(done));
    boost::asio::post(get_executor(), [done = std::move(done)] { done({}); });
  }

  template <class Buffers, class Handler>
  void async_read_some(const Buffers& buffers, Handler&& handler) {
    Read(*boost::asio::buffer_sequence_begin(buffers), Shared(std::forward<Handler>(handler)));
  }
  template <class Buffers, class Handler>
  void async_write_some(const Buffers& buffers, Handler&& handler) {
    Write({boost::asio::buffer_sequence_begin(buffers), boost::asio::buffer_sequence_end(buffers)},
          Shared(std::forward<Handler>(handler)));
  }

 private:
  /// As much as one record of TLS holds.
  static constexpr std::size_t kRecordBytes = 16 * 1024;

  void Read(boost::asio::mutable_buffer buffer, StreamDone done) {
    if (!tls_) return socket_.Read(buffer, std::move(done));
    tls_->async_read_some(buffer, std::move(done));
  }
  // In TLS a piece is a record of its own: small pieces go together.
  void Write(std::vector<boost::asio::const_buffer> pieces, StreamDone done) {
    if (!tls_) return socket_.Write(std::move(pieces), std::move(done));
    const bool gathered = pieces.size() > 1;
    const std::size_t bytes = gathered ? boost::asio::buffer_copy(boost::asio::buffer(record_), pieces) : 0;
    tls_->async_write_some(gathered ? boost::asio::const_buffer(record_.data(), bytes) : pieces.front(),
                           std::move(done));
  }

  WatchedSocket socket_;
  std::optional<boost::asio::ssl::stream<WatchedSocket&>> tls_;
  std::vector<char> record_;
};

/// Ends the sending side, after the last message of a WebSocket: who reads on learns that nothing more comes.
template <class Handler>
void async_teardown(boost::beast::role_type /*role*/, BrowserStream& stream, Handler&& handler) {
  boost::system::error_code error;
  stream.next_layer().shutdown(WatchedSocket::Socket::shutdown_send, error);
  boost::asio::post(stream.get_executor(),
                    [handler = std::forward<Handler>(handler), error]() mutable { handler(error); });
}

}  // namespace orbelcast
