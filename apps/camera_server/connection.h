#pragma once

#include <chrono>
#include <string>
#include <string_view>

namespace orbelcast::camera_server {

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

}  // namespace orbelcast::camera_server
