#pragma once

#include <poll.h>

#include <cstdint>
#include <deque>
#include <functional>
#include <unordered_map>
#include <vector>

#include "adapters/posix/descriptor.h"
#include "platform/event_queue.h"

namespace orbelcast {

/// The event queue of a program without a toolkit: poll(2), the steady clock, and lists.
///
/// poll rather than epoll, because requests begin and end thousands of times a second: changing the watched set costs
/// no system call. Where there are many sockets, those that are watched on and on move into an epoll set, which is
/// polled as one, so that a look costs no more for them. A callback's exception passes through HandleDue and
/// HandleNext; calls that were still due are handled next time.
///
/// HandleNext with nothing to wait for sleeps until a signal comes; a signal that interrupts it makes it return.
class HeadlessQueue final : public EventQueue {
 public:
  HeadlessQueue();

  Nanoseconds Now() const override;
  TimerId ArmTimer(Nanoseconds delay, std::function<void()> callback) override;
  void CancelTimer(TimerId id) override;
  void WatchSocket(int socket, SocketEvents events, std::function<void(SocketEvents)> callback) override;
  void UnwatchSocket(int socket) override;
  void Post(std::function<void()> callback) override;
  void HandleDue() override;
  void HandleNext() override;
  std::optional<Waits> WaitsFor() const override;

  /// Gives up what was posted and has not run, with what it holds: before the services go that it may use.
  void DropPosted();

 private:
  struct ArmedTimer {
    Nanoseconds due;
    TimerId id;
    std::function<void()> callback;
  };
  struct Watch {
    int socket;
    std::uint64_t id;  // tells it from an earlier watch of a socket of the same number
    SocketEvents events;
    std::function<void(SocketEvents)> callback;
    int looks = 0;  // since it began
  };
  struct ReadySocket {
    int socket;
    std::uint64_t watch;
    SocketEvents events;
  };
  struct PostedCall {
    std::uint64_t id;
    std::function<void()> callback;
  };

  enum class Patience { kNone, kUntilDue };
  // One look at everything. False when it was cut short by a signal.
  bool Look(Patience patience);
  bool PollSockets(Patience patience);
  void NoteReady(const Watch& watch, short seen);
  void NoteStandingReady();
  void MoveStanding();
  const Watch* FindWatch(int socket) const;
  void CallTimers();
  void CallSockets();
  void CallPosted();

  std::vector<ArmedTimer> timers_;  // the earliest last
  std::vector<Watch> watches_;
  std::unordered_map<int, Watch> standing_;  // those in the epoll set, by their sockets
  const Descriptor epoll_;
  std::deque<PostedCall> posted_;
  std::uint64_t last_id_ = 0;
  std::uint64_t called_ = 0;

  // The last poll's findings. A look inside a callback polls anew, which outdates those that the outer one still has.
  std::vector<pollfd> polled_;
  std::vector<ReadySocket> ready_;
  std::uint64_t polls_ = 0;
};

}  // namespace orbelcast
