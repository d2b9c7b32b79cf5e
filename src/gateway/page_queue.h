#pragma once

#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <utility>

#include "platform/event_queue.h"

namespace orbelcast {

/// The program's queue, for one session: while its page is away, timers that fall due wait for the page to come back.
///
/// To the session's controls that is a thread that has no time for them. All else goes on.
class PageQueue final : public EventQueue {
 public:
  /// `queue` outlives it. `page_is_away` is asked whenever a timer falls due, while this lives.
  PageQueue(EventQueue& queue, std::function<bool()> page_is_away)
      : queue_(queue), waiting_(std::make_shared<Waiting>(std::move(page_is_away))) {}

  /// The page is there: calls the timers that waited, in their order, the next time the queue is looked at.
  void Resume();

  Nanoseconds Now() const override { return queue_.Now(); }
  TimerId ArmTimer(Nanoseconds delay, std::function<void()> callback) override;
  void CancelTimer(TimerId id) override;
  void WatchSocket(int socket, SocketEvents events, std::function<void(SocketEvents)> callback) override {
    queue_.WatchSocket(socket, events, std::move(callback));
  }
  void UnwatchSocket(int socket) override { queue_.UnwatchSocket(socket); }
  void Post(std::function<void()> callback) override { queue_.Post(std::move(callback)); }
  void HandleDue() override { queue_.HandleDue(); }
  void HandleNext() override { queue_.HandleNext(); }
  std::optional<Waits> WaitsFor() const override { return queue_.WaitsFor(); }
  Nanoseconds FreshFor() const override { return queue_.FreshFor(); }

 private:
  /// Outlived by timers that nobody cancels.
  struct Waiting {
    explicit Waiting(std::function<bool()> is_away) : page_is_away(std::move(is_away)) {}

    std::function<bool()> page_is_away;
    std::list<std::pair<TimerId, std::function<void()>>> timers;
  };

  EventQueue& queue_;
  const std::shared_ptr<Waiting> waiting_;
};

}  // namespace orbelcast
