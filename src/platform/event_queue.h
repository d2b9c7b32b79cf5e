#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace orbelcast {

/// The services of a toolkit or an operating system on which a message loop is built: timers, sockets,
/// posted calls, and "handle what is due". One queue belongs to one thread, and everything here is called on that
/// thread.
///
/// Rules for an implementation:
/// - Callbacks run on the stack of HandleDue, HandleNext or the toolkit's own loop, never inside ArmTimer, Post or
///   WatchSocket. HandleDue may be called from inside a callback (nested), and a callback may arm, cancel, watch and
///   unwatch anything, its own timer and socket included.
/// - A cancelled timer and an unwatched socket never call again, even if they were due already.
/// - Posted calls run in the order in which they were posted; one that is posted while they run waits for the next
/// round.
class EventQueue {
 public:
  using TimerId = std::uint64_t;  ///< Never 0.
  using Nanoseconds = std::chrono::nanoseconds;

  struct SocketEvents {
    bool readable = false;
    bool writable = false;
  };

  virtual ~EventQueue() = default;

  /// Time that only goes forward, for pacing and time-outs; the timers go by it.
  virtual Nanoseconds Now() const = 0;

  /// Calls `callback` once, `delay` from now (a delay that is not positive: as soon as the queue is looked at).
  virtual TimerId ArmTimer(Nanoseconds delay, std::function<void()> callback) = 0;
  virtual void CancelTimer(TimerId id) = 0;

  /// Calls `callback` whenever `socket` is ready for one of `events` (a socket error counts as both). A socket has one
  /// watch: watching it again replaces the events and the callback.
  virtual void WatchSocket(int socket, SocketEvents events, std::function<void(SocketEvents)> callback) = 0;
  virtual void UnwatchSocket(int socket) = 0;

  /// Calls `callback` the next time the queue is looked at.
  virtual void Post(std::function<void()> callback) = 0;

  /// Handles everything that is due, then returns. Never waits.
  virtual void HandleDue() = 0;
  /// Waits until something is due and handles it. Returns after at least one callback ran, or when the platform woke
  /// it.
  virtual void HandleNext() = 0;

  /// The sockets and the time that a host with a loop of its own waits for until HandleDue has something to do.
  struct Waits {
    struct Socket {
      int socket;
      SocketEvents events;
    };
    std::vector<Socket> sockets;
    std::optional<Nanoseconds> next;  ///< Time until a timer or a posted call is due, not negative; none where none is.
  };
  /// The queue's waits just now; none where it cannot tell, since a toolkit does the waiting.
  virtual std::optional<Waits> WaitsFor() const { return std::nullopt; }

  /// How long a look at the queue counts as fresh: a yield within this time may be answered without another look.
  /// Zero where every yield is to look (tests).
  virtual Nanoseconds FreshFor() const { return std::chrono::milliseconds(1); }
};

}  // namespace orbelcast
