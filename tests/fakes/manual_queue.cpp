#include "fakes/manual_queue.h"

#include <algorithm>
#include <stdexcept>

namespace orbelcast::fakes {

EventQueue::TimerId ManualQueue::ArmTimer(Nanoseconds delay, std::function<void()> callback) {
  const TimerId id = ++last_id_;
  timers_.emplace(std::pair(now_ + std::max(delay, Nanoseconds::zero()), id), std::move(callback));
  return id;
}

void ManualQueue::CancelTimer(TimerId id) {
  std::erase_if(timers_, [id](const auto& timer) { return timer.first.second == id; });
}

void ManualQueue::Post(std::function<void()> callback) {
  posted_.push_back(std::move(callback));
}

bool ManualQueue::RunPosted() {
  const auto round = std::exchange(posted_, {});
  for (const auto& callback : round) callback();
  return !round.empty();
}

bool ManualQueue::RunNextTimer(Nanoseconds until) {
  if (timers_.empty() || timers_.begin()->first.first > until) return false;
  const auto first = timers_.extract(timers_.begin());
  now_ = std::max(now_, first.key().first);
  first.mapped()();
  return true;
}

void ManualQueue::HandleDue() {
  // Calls that the callbacks add are for the next look: a yield must not chase a handler that yields in turn.
  std::size_t timers_due = 0;
  for (const auto& timer : timers_) timers_due += timer.first.first <= now_ ? 1 : 0;
  while (timers_due-- > 0 && RunNextTimer(now_)) {
  }
  RunPosted();
}

void ManualQueue::HandleNext() {
  if (RunPosted()) return;
  if (timers_.empty()) throw std::logic_error("a wait that nothing will ever end");
  RunNextTimer(Nanoseconds::max());
}

void ManualQueue::Advance(Nanoseconds time) {
  const Nanoseconds end = now_ + time;
  while (RunPosted() || RunNextTimer(end)) {
  }
  now_ = std::max(now_, end);  // a callback may have blocked beyond it
}

LocalTime ManualClock::Now() const {
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(queue_.Now()).count() + 12 * 3600;
  LocalTime time{2024,
                 1,
                 31,
                 static_cast<int>(seconds / 3600 % 24),
                 static_cast<int>(seconds / 60 % 60),
                 static_cast<int>(seconds % 60)};
  time.day += static_cast<int>(seconds / 86400);
  return time;
}

}  // namespace orbelcast::fakes
