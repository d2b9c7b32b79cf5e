#include "gateway/page_queue.h"

namespace orbelcast {

EventQueue::TimerId PageQueue::ArmTimer(Nanoseconds delay, std::function<void()> callback) {
  const auto id = std::make_shared<TimerId>();
  *id = queue_.ArmTimer(delay, [weak = std::weak_ptr(waiting_), id, callback = std::move(callback)]() mutable {
    const auto waiting = weak.lock();
    if (!waiting) return;
    if (!waiting->page_is_away()) return callback();
    waiting->timers.emplace_back(*id, std::move(callback));
  });
  return *id;
}

void PageQueue::CancelTimer(TimerId id) {
  queue_.CancelTimer(id);
  std::erase_if(waiting_->timers, [id](const auto& timer) { return timer.first == id; });
}

// One after another: each may cancel the next.
void PageQueue::Resume() {
  if (waiting_->timers.empty()) return;
  queue_.Post([weak = std::weak_ptr(waiting_)] {
    const auto waiting = weak.lock();
    while (waiting && !waiting->timers.empty()) {
      const auto callback = std::move(waiting->timers.front().second);
      waiting->timers.pop_front();
      callback();
    }
  });
}

}  // namespace orbelcast
