#include "fakes/scripted_server.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <stdexcept>

namespace orbelcast::fakes {

bool ScriptedServer::Connection::Send(std::string_view bytes) {
  // The client may have them all, and the test go on and change them, before the system's call returns.
  const std::string kept(bytes);
  for (std::string_view rest = kept; !closed_ && !rest.empty();) {
    const ssize_t sent = send(socket_, rest.data(), rest.size(), MSG_NOSIGNAL);
    if (sent <= 0) {
      closed_ = true;
    } else {
      rest.remove_prefix(static_cast<std::size_t>(sent));
    }
  }
  return !closed_;
}

bool ScriptedServer::Connection::Pause(std::chrono::milliseconds time) {
  std::unique_lock lock(server_.mutex_);
  return !server_.stop_.wait_for(lock, time, [this] { return server_.stopping_; });
}

void ScriptedServer::Connection::Never() {
  char byte = 0;
  while (recv(socket_, &byte, 1, 0) > 0) {
  }
  closed_ = true;
}

void ScriptedServer::Connection::Close() {
  shutdown(socket_, SHUT_WR);
  closed_ = true;
}

void ScriptedServer::Connection::Reset() {
  const linger now{1, 0};
  setsockopt(socket_, SOL_SOCKET, SO_LINGER, &now, sizeof now);
  closed_ = true;
}

ScriptedServer::ScriptedServer(Script script) : script_(std::move(script)) {
  listener_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t length = sizeof address;
  if (bind(listener_, reinterpret_cast<sockaddr*>(&address), length) != 0 || listen(listener_, 64) != 0 ||
      getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &length) != 0) {
    throw std::runtime_error("no loopback to listen on");
  }
  port_ = ntohs(address.sin_port);
  threads_.emplace_back([this] { Accept(); });
}

ScriptedServer::~ScriptedServer() {
  {
    const std::lock_guard lock(mutex_);
    stopping_ = true;
    for (const Connection& each : connections_) {
      if (each.socket_ >= 0) shutdown(each.socket_, SHUT_RDWR);
    }
  }
  stop_.notify_all();
  shutdown(listener_, SHUT_RDWR);
  threads_.front().join();  // no more are added from here on
  for (std::size_t i = 1; i < threads_.size(); ++i) threads_[i].join();
  close(listener_);
}

std::string ScriptedServer::Url(std::string_view target) const {
  return "http://127.0.0.1:" + std::to_string(port_) + std::string(target);
}

std::vector<std::string> ScriptedServer::Requests() const {
  const std::lock_guard lock(mutex_);
  return requests_;
}

int ScriptedServer::Connections() const {
  const std::lock_guard lock(mutex_);
  return static_cast<int>(connections_.size());
}

void ScriptedServer::Accept() {
  while (true) {
    const int accepted = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    const std::lock_guard lock(mutex_);
    if (stopping_ || accepted < 0) {
      if (accepted >= 0) close(accepted);
      return;
    }
    Connection& connection = connections_.emplace_back(Connection(*this, accepted));
    threads_.emplace_back([this, &connection] { Serve(connection); });
  }
}

void ScriptedServer::Serve(Connection& connection) {
  std::string received;
  char buffer[4096];
  while (!connection.closed_) {
    const std::size_t end = received.find("\r\n\r\n");
    if (end == std::string::npos) {
      const ssize_t count = recv(connection.socket_, buffer, sizeof buffer, 0);
      if (count <= 0) break;
      received.append(buffer, static_cast<std::size_t>(count));
      continue;
    }
    const std::string request = received.substr(0, end + 4);
    received.erase(0, end + 4);
    {
      const std::lock_guard lock(mutex_);
      requests_.push_back(request);
    }
    script_(request, connection);
  }
  const std::lock_guard lock(mutex_);
  close(std::exchange(connection.socket_, -1));
}

std::string AnswerBytes(int status, std::string_view body, std::string_view headers) {
  return "HTTP/1.1 " + std::to_string(status) + " Text\r\n" + std::string(headers) +
         "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + std::string(body);
}

std::string TargetOf(const std::string& request) {
  const std::size_t begin = request.find(' ') + 1;
  return request.substr(begin, request.rfind(" HTTP/", request.find("\r\n")) - begin);
}

}  // namespace orbelcast::fakes
