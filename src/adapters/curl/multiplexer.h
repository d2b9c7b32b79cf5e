#pragma once

#include <curl/curl.h>

#include <algorithm>
#include <optional>
#include <vector>

#include "platform/http_request.h"
#include "platform/message_loop.h"

namespace orbelcast {

/// A transfer as the multiplexer knows it.
class MultiplexedTransfer {
 public:
  virtual ~MultiplexedTransfer() = default;
  virtual CURL* Handle() = 0;
  /// The time at which it has waited long enough, by EventQueue::Now; none where it has no limit (yet). A deadline that
  /// it sets itself is noted with the multiplexer, which asks for it at that time.
  virtual std::optional<EventQueue::Nanoseconds> Deadline() const = 0;
  /// It has ended and is no longer the multiplexer's. It may begin another one at once.
  virtual void Ended(CURLcode result) = 0;
};

/// All transfers of one message loop, driven by its queue; they share connections, names and TLS sessions.
///
/// One libcurl multi handle: the sockets it asks for are watched in the queue, and one timer of the queue serves its
/// time-outs and the transfers' deadlines. Nothing of a caller runs inside libcurl.
class Multiplexer {
 public:
  /// Connections kept open without use, of all servers together: so many, or as many as there are request objects,
  /// so that however many viewers there are, none connects anew for each picture.
  static constexpr long kIdleConnections = 64;

  explicit Multiplexer(MessageLoop& loop);
  ~Multiplexer();
  Multiplexer(const Multiplexer&) = delete;
  Multiplexer& operator=(const Multiplexer&) = delete;

  /// Null once closed.
  MessageLoop* Loop() const { return loop_; }
  /// Ends every transfer and lets go of the loop; nothing begins any more.
  void Close();

  /// The servers that may be asked. Checked for each address that is opened, and for each that a redirect leads to.
  ServerRule may_ask = nullptr;

  /// A request object was made, or has ended.
  void CountRequests(long change);

  /// Begins a transfer, up to its first wait. False when it cannot begin.
  bool Begin(MultiplexedTransfer& transfer);
  /// Takes a transfer out without a word to it. Harmless where it has ended.
  void Drop(MultiplexedTransfer& transfer);
  bool IsUnderWay(const MultiplexedTransfer& transfer) const;
  /// To be called where a transfer sets its deadline, before it begins or inside libcurl. One that is over, or that a
  /// later one has replaced, costs one look.
  void NoteDeadline(EventQueue::Nanoseconds deadline) { first_deadline_ = std::min(first_deadline_, deadline); }
  /// The same for one that is set at any other time.
  void MoveDeadline(EventQueue::Nanoseconds deadline) {
    NoteDeadline(deadline);
    ArmTimer();
  }
  /// The socket that the transfer waits for; none where it waits for none.
  std::optional<curl_socket_t> SocketOf(MultiplexedTransfer& transfer) const;

  /// Blocks the thread until the transfer has ended. The other transfers go on, their waiters wait for the loop.
  void Block(const MultiplexedTransfer& transfer);

 private:
  using Nanoseconds = EventQueue::Nanoseconds;
  struct Socket {
    curl_socket_t socket;
    EventQueue::SocketEvents events;
    CURL* easy;  ///< The transfer that waits for it.
  };

  static int OnSocketWanted(CURL* easy, curl_socket_t socket, int what, void* self, void* of_socket);
  static int OnTimerWanted(CURLM* multi, long milliseconds, void* self);
  void SetSocket(CURL* easy, curl_socket_t socket, int what);
  /// Lets libcurl go on with a socket, or with what is due (CURL_SOCKET_TIMEOUT).
  void Act(curl_socket_t socket, int events);
  void HandleTime();
  void EndLate(Nanoseconds now);
  void EndFinished();
  void End(MultiplexedTransfer& transfer, CURLcode result);
  Nanoseconds NextTime() const { return std::min(curl_due_, first_deadline_); }
  void ArmTimer();
  void PollOnce();

  MessageLoop* loop_;
  long requests_ = 0;
  CURLM* multi_;
  std::vector<MultiplexedTransfer*> transfers_;
  std::vector<Socket> sockets_;
  Nanoseconds curl_due_ = Nanoseconds::max();
  Nanoseconds first_deadline_ = Nanoseconds::max();  // none of the transfers' is earlier
  // The timer is left alone when it comes too early: with thousands of transfers a second it is rarely touched.
  EventQueue::TimerId timer_ = 0;
  Nanoseconds timer_due_ = Nanoseconds::max();
};

}  // namespace orbelcast
