#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <list>
#include <string>
#include <string_view>
#include <thread>
#include <utility>

#include "camera_server/connection.h"
#include "camera_server/http_message.h"

/// A small HTTP/1.1 server on POSIX sockets, a thread a client.
///
/// It is our own because of what the camera server must be able to do: leave a request unanswered, reset or cut a
/// connection, send bytes that are no HTTP, one byte a second, or a body without end, and read request targets that
/// hold blanks. A general server library does none of these without being bent, and answers from a small pool of
/// threads, which a handful of slow clients would hold up. With a thread a client, bounded in number, each of these is
/// a few straight lines, and a slow client slows nobody but itself.
namespace orbelcast::camera_server {

/// Who asks.
struct Client {
  std::uint64_t id = 0;   ///< one a connection, never used again
  std::string address;    ///< numeric, without its port
  std::string reached;    ///< the host and port of this server that it connected to, as an address has them
  bool is_local = false;  ///< it is on this machine
};

/// Sends an answer as HTTP has it. Returns whether the connection may serve a further request.
bool SendResponse(Connection& connection, const Request& request, const Response& response);

/// What the server serves. Called from many threads at once.
class RequestHandler {
 public:
  virtual ~RequestHandler() = default;
  /// A client sent `head`, all from the method to the empty line, which may be no request at all.
  virtual void Heard(std::string_view head, const Client& client) = 0;
  /// Answers a GET or HEAD.
  virtual Response Answer(const Request& request, const Client& client) = 0;
  /// The client's connection has ended.
  virtual void Gone(const Client& client) = 0;
};

class HttpServer {
 public:
  /// `name` is the value of every answer's "Server" header. `handler` outlives the server.
  HttpServer(std::string name, RequestHandler& handler);
  ~HttpServer();
  HttpServer(const HttpServer&) = delete;
  HttpServer& operator=(const HttpServer&) = delete;

  /// Listens on a numeric IPv4 or IPv6 address; port 0 takes a free one. Throws std::runtime_error with the reason.
  void Listen(const std::string& address, int port);
  int Port() const { return port_; }
  /// "http://127.0.0.1:8080/"
  std::string Url() const;

  /// Serves until `stop_descriptor` becomes readable, then ends every connection and returns.
  void Run(int stop_descriptor);

 private:
  struct Worker {
    std::atomic<bool> done = false;
    std::thread thread;
  };

  void Accept();
  void Serve(int socket, const Client& client, bool is_refused);
  void AnswerRequests(Connection& connection, const Client& client);
  bool AnswerRequest(Connection& connection, const Request& request, const Client& client);
  Response AnswerOf(const Request& request, const Client& client);
  void Complete(Response& response) const;
  void Refuse(Connection& connection, int status) const;
  void ForgetEnded();

  std::string name_;
  RequestHandler& handler_;
  int listener_ = -1;
  int stop_ = -1;  // an event descriptor that all connections watch
  int port_ = 0;
  std::string host_;
  std::uint64_t next_client_ = 1;
  std::list<Worker> workers_;
};

}  // namespace orbelcast::camera_server
