#pragma once

#include <map>
#include <utility>
#include <vector>

#include "platform/clock.h"
#include "platform/event_queue.h"

namespace orbelcast::fakes {

/// An event queue whose time stands still until a test moves it. Sockets are never ready.
///
/// Every yield looks at the queue (nothing counts as fresh, unless it is told for how long), so a test meets each yield
/// point for real.
class ManualQueue final : public EventQueue {
 public:
  explicit ManualQueue(Nanoseconds fresh_for = Nanoseconds::zero()) : fresh_for_(fresh_for) {}

  Nanoseconds Now() const override { return now_; }
  TimerId ArmTimer(Nanoseconds delay, std::function<void()> callback) override;
  void CancelTimer(TimerId id) override;
  void WatchSocket(int, SocketEvents, std::function<void(SocketEvents)>) override {}
  void UnwatchSocket(int) override {}
  void Post(std::function<void()> callback) override;
  void HandleDue() override;
  /// Handles what is due; with nothing due it moves time on to the next timer, so a wait on the host's own stack ends.
  /// Throws std::logic_error where nothing will ever come: the test would hang.
  void HandleNext() override;
  Nanoseconds FreshFor() const override { return fresh_for_; }

  /// Lets time pass while the thread is blocked: what falls due meanwhile waits for the next look.
  void Block(Nanoseconds time) { now_ += time; }

  /// Moves time on by `time`, handling on the way everything that falls due, in order.
  void Advance(Nanoseconds time);

 private:
  bool RunPosted();
  /// Runs the timer that is due first, if it is due by `until`.
  bool RunNextTimer(Nanoseconds until);

  const Nanoseconds fresh_for_;
  Nanoseconds now_{};
  TimerId last_id_ = 0;
  std::map<std::pair<Nanoseconds, TimerId>, std::function<void()>> timers_;
  std::vector<std::function<void()>> posted_;
};

/// A wall clock that shows 2024-01-31 12:00:00 plus the time of a ManualQueue.
class ManualClock final : public Clock {
 public:
  explicit ManualClock(const ManualQueue& queue) : queue_(queue) {}
  LocalTime Now() const override;

 private:
  const ManualQueue& queue_;
};

}  // namespace orbelcast::fakes
