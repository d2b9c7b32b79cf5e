#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <list>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

namespace orbelcast::fakes {

/// An HTTP server on 127.0.0.1 that does to its clients what a test says, byte by byte; see the folder's README.
///
/// It listens from its construction, on a port that the system picks, until its destruction, which cuts every
/// connection and pause short. The script runs on a thread of the connection's own.
class ScriptedServer {
 public:
  /// One connection, in the script's hands while it answers a request.
  class Connection {
   public:
    /// Sends bytes as they are. False once the client, or the server's end, has closed the connection.
    bool Send(std::string_view bytes);
    /// Lets time pass. False when the server ends meanwhile.
    bool Pause(std::chrono::milliseconds time);
    /// Waits until the server ends or the client closes the connection: no answer ever comes.
    void Never();
    /// Closes the connection after what was sent.
    void Close();
    /// Closes it so that the client sees a reset.
    void Reset();

   private:
    friend class ScriptedServer;
    explicit Connection(ScriptedServer& server, int socket) : server_(server), socket_(socket) {}
    ScriptedServer& server_;
    int socket_;
    bool closed_ = false;
  };

  /// Called with each request's bytes, from the method to the empty line.
  using Script = std::function<void(const std::string& request, Connection& connection)>;

  explicit ScriptedServer(Script script);
  /// Gives every request the same bytes.
  explicit ScriptedServer(std::string answer)
      : ScriptedServer([answer = std::move(answer)](const std::string&, Connection& to) { to.Send(answer); }) {}
  ~ScriptedServer();
  ScriptedServer(const ScriptedServer&) = delete;
  ScriptedServer& operator=(const ScriptedServer&) = delete;

  int Port() const { return port_; }
  /// "http://127.0.0.1:port" followed by `target`.
  std::string Url(std::string_view target = "/") const;

  /// The requests received so far, each as the exact bytes; the order is that of arrival.
  std::vector<std::string> Requests() const;
  /// Connections accepted so far.
  int Connections() const;

 private:
  void Accept();
  void Serve(Connection& connection);

  Script script_;
  int listener_ = -1;
  int port_ = 0;
  mutable std::mutex mutex_;
  std::condition_variable stop_;
  bool stopping_ = false;
  std::vector<std::string> requests_;
  std::list<Connection> connections_;
  std::vector<std::thread> threads_;  // the first accepts
};

/// An answer's bytes: the status line, `headers` (each line ended by CR LF), Content-Length, the body.
std::string AnswerBytes(int status, std::string_view body = {}, std::string_view headers = {});

/// The request target in a request's bytes.
std::string TargetOf(const std::string& request);

}  // namespace orbelcast::fakes
