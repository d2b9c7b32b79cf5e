#pragma once

#include <cstddef>
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

/// Takes the next line, without its end, off the front of `text`.
std::string_view TakeLine(std::string_view& text);

/// Reads what stands from the method to the empty line; gives the status to refuse it with when it is no request.
std::variant<Request, int> ParseRequest(std::string_view head);

/// How many bytes of `bytes` make a complete request head, the empty line included; none while it is incomplete.
std::optional<std::size_t> FindEndOfHead(std::string_view bytes);

struct Response;
class Connection;
/// Hands an answer to a client in a way of its own. Returns whether the connection may serve a further request.
using Delivery = std::function<bool(Connection&, const Request&, const Response&)>;

struct Response {
  int status = 200;
  Headers headers{};
  /// Shared, because several clients may be sent one picture. Never null.
  std::shared_ptr<const std::string> body = std::make_shared<const std::string>();
  Delivery delivery{};  ///< empty: as HTTP has it
};

/// An answer of one line of text.
Response TextResponse(int status, const std::string& text);
/// An answer that shows how things stand now, so that nobody keeps it.
Response FreshResponse(const std::string& type, std::shared_ptr<const std::string> body);

/// "404 Not Found"; 506 has the reason phrase of the viewers' protocol.
std::string StatusText(int status);

/// The status line and the headers as they stand, without the empty line.
std::string HeadLines(const Response& response);
/// The whole head, from the status line to the empty line, with Content-Length and Connection added.
std::string HeadBytes(const Response& response, bool keep_alive);
/// False for an answer that has no body whatever it carries: to HEAD, and of the statuses 204 and 304.
bool HasBody(const Request& request, const Response& response);

}  // namespace orbelcast::camera_server
