#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace orbelcast::camera_server {

/// Names and values, in the order in which they came or go.
using Headers = std::vector<std::pair<std::string, std::string>>;

/// One request, without a body: none is used.
struct Request {
  std::string method;
  /// The bytes between the method and the version, blanks included: viewers send a user name and a password as they
  /// were typed. Of an absolute address, what follows the authority.
  std::string target;
  bool keep_alive = true;
  bool is_http_1_1 = true;
  std::size_t body_bytes = 0;  ///< as announced; the server reads and drops them
  Headers headers;

  /// The value of the first header of that name, or empty.
  std::string_view Header(std::string_view name) const;
  /// The target up to its first "?".
  std::string_view Path() const;
};

/// The client that asks.
struct Client {
  std::uint64_t id = 0;   ///< one a connection, never used again
  std::string address;    ///< numeric, without its port
  std::string reached;    ///< the host and port of this server that it connected to, as an address has them
  bool is_local = false;  ///< it is on this machine
};

/// Takes the next line, without its end, off the front of `text`.
std::string_view TakeLine(std::string_view& text);

/// Reads what stands from the method to the empty line; gives the status to refuse it with when it is no request.
std::variant<Request, int> ParseRequest(std::string_view head);

/// The length of the complete request head that `bytes` begins with, the empty line included; none while it is
/// incomplete.
std::optional<std::size_t> FindEndOfHead(std::string_view bytes);

/// One client's socket, which it owns and closes. Every wait ends early when the server's stop descriptor becomes
/// readable. Used by one thread.
class Connection {
 public:
  using TimePoint = std::chrono::steady_clock::time_point;

  /// `socket` becomes non-blocking; `stop_descriptor` stays the caller's.
  Connection(int socket, int stop_descriptor);
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  enum class Received { kBytes, kTimeOut, kClosed };
  /// Waits until `deadline` for bytes, and appends what came. kClosed also when the server ends.
  Received Receive(std::string& bytes, TimePoint deadline);

  enum class More { kNo, kFollows };  ///< kFollows holds a short piece back, to share a packet with the next
  /// Sends all of `bytes`. False when the client has gone, takes nothing any more, or the server ends.
  bool Send(std::string_view bytes, More more = More::kNo);

  /// Lets time pass. False when the client resets the connection or the server ends.
  bool Pause(std::chrono::milliseconds time);
  /// Waits until the client closes the connection or the server ends.
  void WaitUntilGone();

  /// Closes after what was sent. Waits a moment for the client to have read it: closing on unread bytes would reset the
  /// connection and take the answer away.
  void CloseGently();
  /// Closes with what was sent so far, at once.
  void Close();
  /// Closes so that the client sees a reset.
  void Reset();

 private:
  enum class Woken { kReady, kTimeOut, kStopped };
  Woken Wait(short events, TimePoint deadline) const;

  int socket_;
  int stop_descriptor_;
};

struct Response;
/// A way to hand an answer to a client. Returns whether the connection may serve a further request.
using Delivery = std::function<bool(Connection&, const Request&, const Response&)>;

/// As HTTP has it.
bool SendResponse(Connection& connection, const Request& request, const Response& response);

/// Bytes that several answers may share, such as one picture for several clients.
using Body = std::shared_ptr<const std::string>;
inline Body MakeBody(std::string bytes) {
  return std::make_shared<const std::string>(std::move(bytes));
}

struct Response {
  int status = 200;
  Headers headers{};
  Body body = MakeBody({});  ///< never null
  Delivery delivery = SendResponse;
};

inline constexpr const char* kPlainText = "text/plain; charset=utf-8";
/// An answer of one line of text.
Response TextResponse(int status, const std::string& text);
/// An answer that shows how things stand now, so that nobody keeps it.
Response FreshResponse(const std::string& type, Body body);

/// "404 Not Found"; 506 has the reason phrase of the viewers' protocol.
std::string StatusText(int status);

/// The status line, Server and Date, and the headers as they stand, without the empty line.
std::string HeadLines(const Response& response);
/// The whole head, from the status line to the empty line, with Content-Length and Connection added.
std::string HeadBytes(const Response& response, bool keep_alive);

}  // namespace orbelcast::camera_server
