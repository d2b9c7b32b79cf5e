#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <vector>

#include "platform/event_queue.h"

namespace orbelcast {

/// The event queue on the loop of the thread's QCoreApplication, which must exist while the queue does.
class QtQueue final : public QObject, public EventQueue {
 public:
  QtQueue();
  ~QtQueue() override;

  Nanoseconds Now() const override;
  TimerId ArmTimer(Nanoseconds delay, std::function<void()> callback) override;
  void CancelTimer(TimerId id) override;
  void WatchSocket(int socket, SocketEvents events, std::function<void(SocketEvents)> callback) override;
  void UnwatchSocket(int socket) override;
  void Post(std::function<void()> callback) override;
  void HandleDue() override;
  void HandleNext() override;

 protected:
  bool event(QEvent* event) override;

 private:
  static constexpr int kNoSocket = -1;

  struct ArmedTimer {
    Nanoseconds due;
    TimerId id;
    std::function<void()> callback;
  };
  // Kept for the next socket when its own is no longer watched, so a notifier is never deleted while it calls.
  struct Watch {
    int socket = kNoSocket;
    SocketEvents events;
    std::function<void(SocketEvents)> callback;
    QSocketNotifier readable{QSocketNotifier::Read};
    QSocketNotifier writable{QSocketNotifier::Write};
  };
  struct Posted {
    std::uint64_t id;
    std::function<void()> callback;
  };

  void CallTimers();
  void CallPosted();
  static void CallSocket(const Watch& watch);
  void WakeForTimers();
  Watch* FindWatch(int socket) const;
  Watch& MakeWatch();

  QTimer wake_;
  std::vector<ArmedTimer> timers_;  // the last is due first
  std::vector<std::unique_ptr<Watch>> watches_;
  std::deque<Posted> posted_;
  bool wake_posted_ = false;
  std::uint64_t last_id_ = 0;
};

}  // namespace orbelcast
