// The one source that includes Boost.Beast, which takes long to compile: so all that needs it is here.

#include "gateway/http_front.h"

#include <openssl/ssl.h>
#include <openssl/x509err.h>

#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/ssl/context.hpp>
#include <boost/beast/core.hpp>
#include <boost/beast/http.hpp>
#include <boost/beast/websocket.hpp>

#include <algorithm>
#include <array>
#include <chrono>
#include <deque>
#include <set>
#include <string_view>

#include "gateway/browser_stream.h"

namespace orbelcast {

namespace {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = beast::http;
namespace ssl = asio::ssl;
namespace websocket = beast::websocket;
using asio::ip::tcp;
using Acceptor = asio::basic_socket_acceptor<tcp, asio::io_context::executor_type>;
using ErrorCode = boost::system::error_code;

/// Of a connection, in the system: what lies there cannot be replaced by a newer picture any more.
constexpr int kSendBufferBytes = 128 * 1024;

std::string TextOf(beast::string_view text) {
  return {text.data(), text.size()};
}

HttpQuestion QuestionOf(const http::request<http::empty_body>& request) {
  return {.method = TextOf(request.method_string()),
          .target = TextOf(request.target()),
          .host = TextOf(request[http::field::host]),
          .origin = TextOf(request[http::field::origin]),
          .authorization = TextOf(request[http::field::authorization])};
}

http::response<http::string_body> ResponseOf(HttpReply reply, const http::request<http::empty_body>& request) {
  http::response<http::string_body> response(static_cast<http::status>(reply.status), request.version());
  response.set(http::field::content_type, reply.type);
  for (const auto& [name, value] : reply.headers) response.set(name, value);
  response.keep_alive(request.keep_alive());
  if (request.method() == http::verb::head) {
    response.content_length(reply.body.size());
  } else {
    response.body() = std::move(reply.body);
    response.prepare_payload();
  }
  return response;
}

/// TLS as this side of it speaks: version 1.2 or newer, nothing compressed, nothing negotiated anew, and nothing kept
/// of a connection that has ended.
std::shared_ptr<ssl::context> TlsOf(const TlsIdentity& identity) {
  auto context = std::make_shared<ssl::context>(ssl::context::tls_server);
  SSL_CTX* const native = context->native_handle();
  SSL_CTX_set_min_proto_version(native, TLS1_2_VERSION);
  SSL_CTX_set_options(native, SSL_OP_NO_COMPRESSION | SSL_OP_NO_RENEGOTIATION | SSL_OP_CIPHER_SERVER_PREFERENCE);
  SSL_CTX_set_session_cache_mode(native, SSL_SESS_CACHE_OFF);
  ErrorCode error;
  // Nobody is asked for a passphrase.
  context->set_password_callback([](std::size_t, ssl::context::password_purpose) { return std::string(); }, error);
  context->use_certificate_chain(asio::buffer(identity.certificate_chain), error);
  if (error) throw std::runtime_error("the certificate cannot be used: " + error.message());
  context->use_private_key(asio::buffer(identity.private_key), ssl::context::pem, error);
  if (error && ERR_GET_REASON(static_cast<unsigned long>(error.value())) == X509_R_KEY_VALUES_MISMATCH) {
    throw std::runtime_error("the key is not that of the certificate");
  }
  if (error) throw std::runtime_error("the key cannot be used (it is to have no passphrase): " + error.message());
  return context;
}

}  // namespace

/// The sockets and their watches in the queue. Boost.Asio finds out what can be done with a socket once the queue says
/// that something can: its own loop never waits.
class HttpFront::Server : public std::enable_shared_from_this<Server> {
 public:
  class Connection;

  Server(EventQueue& queue, Handlers handlers, const std::optional<TlsIdentity>& identity)
      : queue_(queue), handlers_(std::move(handlers)), tls_(identity ? TlsOf(*identity) : nullptr) {}

  int Listen(const std::string& address, int port);
  void End();

  EventQueue& Queue() { return queue_; }
  /// Null where bytes go as they are.
  std::shared_ptr<ssl::context> Tls() const { return tls_; }
  void Renew(const TlsIdentity& identity) { tls_ = TlsOf(identity); }
  const Handlers& Calls() const { return handlers_; }

  /// Calls the handlers of what can be done, unless that is being done.
  void Run();
  /// The same as soon as the queue is looked at.
  void RunSoon();
  void Watch(int socket, EventQueue::SocketEvents events);
  /// That connection may wait for something else now: its watch is set when all that can be done was done.
  void NoteChange(std::weak_ptr<Connection> connection) { changed_.push_back(std::move(connection)); }
  void Forget(const std::shared_ptr<Connection>& connection) { connections_.erase(connection); }

 private:
  void Accept(const std::shared_ptr<Acceptor>& acceptor);
  void PauseAccepting(const std::shared_ptr<Acceptor>& acceptor);

  EventQueue& queue_;
  const Handlers handlers_;
  std::shared_ptr<ssl::context> tls_;  ///< Of connections that are to come; each keeps its own.
  asio::io_context context_{1};
  std::vector<std::shared_ptr<Acceptor>> acceptors_;
  std::set<std::shared_ptr<Connection>> connections_;
  std::vector<std::weak_ptr<Connection>> changed_;
  bool running_ = false;
  bool posted_ = false;
};

/// A browser's connection: requests one after another, until one makes it a page's.
class HttpFront::Server::Connection final : public Page, public std::enable_shared_from_this<Connection> {
 public:
  Connection(std::shared_ptr<Server> server, WatchedSocket::Socket socket)
      : server_(std::move(server)),
        tls_(server_->Tls()),
        stream_(std::move(socket), tls_.get(), [this] { NoteChange(); }),
        socket_(Socket().native_handle()) {}

  void Begin();
  /// Watches the socket for what it waits for now.
  void SetWatch();
  /// Closes it at once.
  void Drop();

  void SendText(std::string line) override { Send({std::move(line), {}, false}); }
  void SendBytes(std::string line, FrameBytes bytes) override;
  bool IsIdle() const override { return !writing_; }
  void Close(const std::string& why) override;

 private:
  struct Message {
    std::string text;
    FrameBytes bytes;
    bool binary;
  };

  void Read();
  void TakeRequest(ErrorCode error);
  void Answer(HttpReply reply);
  void BecomePage();
  void ReadLine();
  void TakeMessage(ErrorCode error);
  void Send(Message message);
  void Write();
  void Guard(int seconds);
  void Unguard();
  void LookForLife();
  void NoteChange();
  WatchedSocket::Socket& Socket() { return stream_.next_layer().next_layer(); }
  bool IsOpen() const { return stream_.next_layer().next_layer().is_open(); }

  const std::shared_ptr<Server> server_;
  const std::shared_ptr<ssl::context> tls_;
  /// Without the compression of WebSocket: nearly all that is sent are pictures, which are compressed already.
  websocket::stream<BrowserStream, false> stream_;
  const int socket_;
  beast::flat_buffer buffer_;
  std::optional<http::request_parser<http::empty_body>> parser_;
  std::optional<http::response<http::string_body>> response_;
  std::shared_ptr<PageUser> user_;
  std::deque<Message> messages_;  ///< Those that wait; the first is on its way while `writing_`.
  std::size_t waiting_bytes_ = 0;
  bool writing_ = false;
  EventQueue::SocketEvents watched_{};
  bool changed_ = false;  ///< Its watch is about to be set.
  bool pinging_ = false;
  bool heard_ = true;
  EventQueue::TimerId timer_ = 0;
};

// ---- Server ---------------------------------------------------------------------------------------------------------

int HttpFront::Server::Listen(const std::string& address, int port) {
  ErrorCode error;
  const auto numeric = asio::ip::make_address(address, error);
  if (error) throw std::runtime_error(address + " is no numeric address");
  auto acceptor = std::make_shared<Acceptor>(context_);
  const tcp::endpoint endpoint(numeric, static_cast<std::uint16_t>(port));
  if (acceptor->open(endpoint.protocol(), error); !error) acceptor->set_option(Acceptor::reuse_address(true), error);
  if (!error) acceptor->bind(endpoint, error);
  if (!error) acceptor->listen(asio::socket_base::max_listen_connections, error);
  if (error)
    throw std::runtime_error("cannot listen at " + address + ":" + std::to_string(port) + ": " + error.message());
  acceptors_.push_back(acceptor);
  Watch(acceptor->native_handle(), {.readable = true});
  Accept(acceptor);
  RunSoon();
  return acceptor->local_endpoint().port();
}

void HttpFront::Server::Accept(const std::shared_ptr<Acceptor>& acceptor) {
  acceptor->async_accept([this, self = shared_from_this(), acceptor](ErrorCode error, WatchedSocket::Socket socket) {
    if (!acceptor->is_open()) return;
    if (error) return PauseAccepting(acceptor);
    if (connections_.size() < kMaxConnections) {
      const auto connection = std::make_shared<Connection>(self, std::move(socket));
      connections_.insert(connection);
      connection->Begin();
    }
    Accept(acceptor);
  });
}

// There are no descriptors left, or the like: the queue would say again and again that somebody waits.
void HttpFront::Server::PauseAccepting(const std::shared_ptr<Acceptor>& acceptor) {
  queue_.UnwatchSocket(acceptor->native_handle());
  queue_.ArmTimer(std::chrono::milliseconds(100), [weak = weak_from_this(), acceptor] {
    const auto self = weak.lock();
    if (!self || !acceptor->is_open()) return;
    self->Watch(acceptor->native_handle(), {.readable = true});
    self->Accept(acceptor);
    self->Run();
  });
}

void HttpFront::Server::End() {
  for (const auto& acceptor : acceptors_) {
    queue_.UnwatchSocket(acceptor->native_handle());
    ErrorCode ignored;
    acceptor->close(ignored);
  }
  for (const auto& connection : std::set(connections_)) connection->Drop();
  Run();
}

void HttpFront::Server::Run() {
  if (running_) return;
  running_ = true;
  context_.restart();
  context_.poll();
  running_ = false;
  for (const auto& each : std::exchange(changed_, {})) {
    if (const auto connection = each.lock()) connection->SetWatch();
  }
}

void HttpFront::Server::RunSoon() {
  if (std::exchange(posted_, true)) return;
  queue_.Post([self = shared_from_this()] {
    self->posted_ = false;
    self->Run();
  });
}

void HttpFront::Server::Watch(int socket, EventQueue::SocketEvents events) {
  queue_.WatchSocket(socket, events, [weak = weak_from_this()](EventQueue::SocketEvents) {
    if (const auto self = weak.lock()) self->Run();
  });
}

// ---- Requests -------------------------------------------------------------------------------------------------------

void HttpFront::Server::Connection::Begin() {
  ErrorCode ignored;
  Socket().non_blocking(true, ignored);
  Socket().set_option(tcp::no_delay(true), ignored);
  Socket().set_option(asio::socket_base::send_buffer_size(kSendBufferBytes), ignored);
  // The first request's time: that of the handshake is part of it.
  Guard(kMaxRequestSeconds);
  stream_.next_layer().Handshake([self = shared_from_this()](ErrorCode error) {
    if (error) return self->Drop();
    self->Read();
  });
  server_->RunSoon();
}

void HttpFront::Server::Connection::NoteChange() {
  if (!std::exchange(changed_, true)) server_->NoteChange(weak_from_this());
}

// A socket that is not waited for is not watched: who sends what is not read yet keeps nobody busy.
void HttpFront::Server::Connection::SetWatch() {
  changed_ = false;
  const EventQueue::SocketEvents awaited = stream_.next_layer().Awaited();
  if (!IsOpen() || (awaited.readable == watched_.readable && awaited.writable == watched_.writable)) return;
  watched_ = awaited;
  if (awaited.readable || awaited.writable) {
    server_->Watch(socket_, awaited);
  } else {
    server_->Queue().UnwatchSocket(socket_);
  }
}

void HttpFront::Server::Connection::Read() {
  parser_.emplace();
  parser_->header_limit(kMaxRequestBytes);
  parser_->body_limit(0);
  http::async_read(stream_.next_layer(), buffer_, *parser_,
                   [self = shared_from_this()](ErrorCode error, std::size_t) { self->TakeRequest(error); });
}

void HttpFront::Server::Connection::TakeRequest(ErrorCode error) {
  if (error) return Drop();
  const HttpQuestion question = QuestionOf(parser_->get());
  if (!websocket::is_upgrade(parser_->get())) return Answer(server_->Calls().answer(question));
  if (auto refused = server_->Calls().refuse(question)) return Answer(std::move(*refused));
  // A page speaks when it was answered.
  if (buffer_.size() > 0) return Drop();
  BecomePage();
}

void HttpFront::Server::Connection::Answer(HttpReply reply) {
  Guard(kMaxRequestSeconds);
  response_.emplace(ResponseOf(std::move(reply), parser_->get()));
  http::async_write(stream_.next_layer(), *response_, [self = shared_from_this()](ErrorCode error, std::size_t) {
    if (error || !self->response_->keep_alive()) return self->Drop();
    self->Guard(kMaxRequestSeconds);
    self->Read();
  });
}

// ---- Pages ----------------------------------------------------------------------------------------------------------

void HttpFront::Server::Connection::BecomePage() {
  stream_.set_option(
      websocket::stream_base::timeout{websocket::stream_base::none(), websocket::stream_base::none(), false});
  stream_.read_message_max(kMaxLineBytes);
  stream_.auto_fragment(false);
  stream_.control_callback([this](websocket::frame_type, beast::string_view) { heard_ = true; });
  stream_.async_accept(parser_->get(), [self = shared_from_this()](ErrorCode error) {
    if (error) return self->Drop();
    self->LookForLife();
    self->user_ = self->server_->Calls().open(self);
    self->ReadLine();
  });
}

void HttpFront::Server::Connection::ReadLine() {
  stream_.async_read(buffer_, [self = shared_from_this()](ErrorCode error, std::size_t) { self->TakeMessage(error); });
}

// The actions that a line sets going run outside of Asio's loop.
void HttpFront::Server::Connection::TakeMessage(ErrorCode error) {
  if (error) return Drop();
  heard_ = true;
  server_->Queue().Post([user = user_, line = beast::buffers_to_string(buffer_.data())] {
    if (user) user->TakeLine(line);
  });
  buffer_.consume(buffer_.size());
  ReadLine();
}

void HttpFront::Server::Connection::SendBytes(std::string line, FrameBytes bytes) {
  Send({std::move(line), std::move(bytes), true});
}

void HttpFront::Server::Connection::Send(Message message) {
  if (!IsOpen()) return;
  const std::size_t size = message.text.size() + message.bytes.Size();
  if (writing_ && waiting_bytes_ + size > kMaxWaitingBytes) return Close("the page reads too slowly");
  waiting_bytes_ += size;
  messages_.push_back(std::move(message));
  if (!writing_) Write();
}

// A message of bytes is its lines, their length in four bytes before them, and then the bytes.
void HttpFront::Server::Connection::Write() {
  writing_ = true;
  const Message& message = messages_.front();
  waiting_bytes_ -= message.text.size() + message.bytes.Size();
  const auto length = static_cast<std::uint32_t>(message.text.size());
  const auto prefix = std::make_shared<std::array<std::uint8_t, 4>>();
  for (std::size_t i = 0; i < prefix->size(); ++i) (*prefix)[i] = static_cast<std::uint8_t>(length >> (8 * i));
  const std::array<asio::const_buffer, 3> parts{asio::buffer(prefix->data(), message.binary ? prefix->size() : 0),
                                                asio::buffer(message.text),
                                                asio::const_buffer(message.bytes.Bytes().data(), message.bytes.Size())};
  stream_.binary(message.binary);
  stream_.async_write(parts, [self = shared_from_this(), prefix](ErrorCode error, std::size_t) {
    self->messages_.pop_front();
    self->writing_ = false;
    if (error || !self->IsOpen()) return self->Drop();
    if (!self->messages_.empty()) return self->Write();
    self->server_->Queue().Post([user = self->user_] {
      if (user) user->TellIdle();
    });
  });
  server_->RunSoon();
}

// ---- Ends -----------------------------------------------------------------------------------------------------------

void HttpFront::Server::Connection::Close(const std::string& why) {
  constexpr std::size_t kMaxReason = 120;
  if (!IsOpen() || !stream_.is_open() || writing_) return Drop();
  const websocket::close_reason reason(websocket::close_code::policy_error, why.substr(0, kMaxReason));
  writing_ = true;
  stream_.async_close(reason, [self = shared_from_this()](ErrorCode) { self->Drop(); });
  server_->RunSoon();
}

void HttpFront::Server::Connection::Drop() {
  const auto self = shared_from_this();
  Unguard();
  if (IsOpen()) {
    server_->Queue().UnwatchSocket(socket_);
    ErrorCode ignored;
    Socket().close(ignored);
    server_->RunSoon();
  }
  server_->Forget(self);
  if (!user_) return;
  server_->Queue().Post([user = std::move(user_)] { user->TellGone(); });
  user_ = nullptr;
}

void HttpFront::Server::Connection::Guard(int seconds) {
  Unguard();
  timer_ = server_->Queue().ArmTimer(std::chrono::seconds(seconds), [weak = weak_from_this()] {
    const auto self = weak.lock();
    if (!self) return;
    self->timer_ = 0;
    self->Drop();
  });
}

void HttpFront::Server::Connection::Unguard() {
  if (timer_ != 0) server_->Queue().CancelTimer(timer_);
  timer_ = 0;
}

// A third of the time passes between two looks; a page that was not heard in two of them is asked, in three is dropped.
void HttpFront::Server::Connection::LookForLife() {
  Unguard();
  timer_ = server_->Queue().ArmTimer(std::chrono::seconds(kMaxSilentSeconds) / 3, [weak = weak_from_this()] {
    const auto self = weak.lock();
    if (!self) return;
    self->timer_ = 0;
    if (!self->heard_ && self->pinging_) return self->Drop();
    self->SendText("{\"alive\":true}");
    self->pinging_ = !std::exchange(self->heard_, false);
    if (self->pinging_) {
      self->stream_.async_ping({}, [self](ErrorCode) { /* the answer counts */ });
      self->server_->RunSoon();
    }
    self->LookForLife();
  });
}

// ---- The front ------------------------------------------------------------------------------------------------------

HttpFront::HttpFront(EventQueue& queue, Handlers handlers, const std::optional<TlsIdentity>& identity)
    : server_(std::make_shared<Server>(queue, std::move(handlers), identity)) {}

// NOLINTNEXTLINE(bugprone-exception-escape): what escapes is a lack of memory, which ends the program.
HttpFront::~HttpFront() {
  server_->End();
}

int HttpFront::Listen(const std::string& address, int port) {
  return server_->Listen(address, port);
}

void HttpFront::Renew(const TlsIdentity& identity) {
  server_->Renew(identity);
}

}  // namespace orbelcast
