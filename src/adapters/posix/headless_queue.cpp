#include "adapters/posix/headless_queue.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <utility>

namespace orbelcast {

EventQueue::Nanoseconds HeadlessQueue::Now() const {
  return std::chrono::steady_clock::now().time_since_epoch();
}

EventQueue::TimerId HeadlessQueue::ArmTimer(Nanoseconds delay, std::function<void()> callback) {
  const Nanoseconds now = Now();
  // A delay beyond the clock's end would come at once.
  const Nanoseconds due = now + std::clamp(delay, Nanoseconds::zero(), Nanoseconds::max() - now);
  const auto place = std::lower_bound(timers_.begin(), timers_.end(), due,
                                      [](const ArmedTimer& timer, Nanoseconds value) { return timer.due > value; });
  return timers_.insert(place, {due, ++last_id_, std::move(callback)})->id;
}

void HeadlessQueue::CancelTimer(TimerId id) {
  std::erase_if(timers_, [id](const ArmedTimer& timer) { return timer.id == id; });
}

void HeadlessQueue::WatchSocket(int socket, SocketEvents events, std::function<void(SocketEvents)> callback) {
  UnwatchSocket(socket);
  watches_.push_back({socket, ++last_id_, events, std::move(callback)});
}

void HeadlessQueue::UnwatchSocket(int socket) {
  std::erase_if(watches_, [socket](const Watch& watch) { return watch.socket == socket; });
}

void HeadlessQueue::Post(std::function<void()> callback) {
  posted_.push_back({++last_id_, std::move(callback)});
}

// The end of what they hold may post more.
void HeadlessQueue::DropPosted() {
  while (!posted_.empty()) std::exchange(posted_, {});
}

void HeadlessQueue::HandleDue() {
  Look(Patience::kNone);
}

void HeadlessQueue::HandleNext() {
  const std::uint64_t before = called_;
  while (Look(Patience::kUntilDue) && called_ == before) {
  }
}

std::optional<EventQueue::Waits> HeadlessQueue::WaitsFor() const {
  Waits waits;
  for (const Watch& each : watches_) waits.sockets.push_back({each.socket, each.events});
  if (!posted_.empty()) {
    waits.next = Nanoseconds::zero();
  } else if (!timers_.empty()) {
    waits.next = std::max(Nanoseconds::zero(), timers_.back().due - Now());
  }
  return waits;
}

bool HeadlessQueue::Look(Patience patience) {
  const bool uninterrupted = PollSockets(patience);
  CallTimers();
  CallSockets();
  CallPosted();
  return uninterrupted;
}

bool HeadlessQueue::PollSockets(Patience patience) {
  ++polls_;
  ready_.clear();
  Nanoseconds wait = Nanoseconds::zero();
  const timespec* limit = nullptr;
  timespec time{};
  if (patience == Patience::kNone || !posted_.empty() || !timers_.empty()) {
    if (patience == Patience::kUntilDue && posted_.empty()) wait = std::max(wait, timers_.back().due - Now());
    if (wait == Nanoseconds::zero() && watches_.empty()) return true;
    time.tv_sec = static_cast<time_t>(wait.count() / 1'000'000'000);
    time.tv_nsec = static_cast<long>(wait.count() % 1'000'000'000);
    limit = &time;
  }

  polled_.clear();
  for (const Watch& watch : watches_) {
    short events = 0;
    if (watch.events.readable) events |= POLLIN;
    if (watch.events.writable) events |= POLLOUT;
    polled_.push_back({watch.socket, events, 0});
  }
  const int found = ppoll(polled_.data(), static_cast<nfds_t>(polled_.size()), limit, nullptr);
  if (found < 0) return errno != EINTR;
  for (std::size_t i = 0; found > 0 && i < polled_.size(); ++i) {
    const short seen = polled_[i].revents;
    if (seen == 0) continue;
    const bool error = (seen & (POLLERR | POLLHUP | POLLNVAL)) != 0;
    ready_.push_back({watches_[i].id, {error || (seen & POLLIN) != 0, error || (seen & POLLOUT) != 0}});
  }
  return true;
}

void HeadlessQueue::CallTimers() {
  if (timers_.empty()) return;
  const Nanoseconds now = Now();
  const TimerId newest = last_id_;
  while (!timers_.empty() && timers_.back().due <= now && timers_.back().id <= newest) {
    const auto callback = std::move(timers_.back().callback);
    timers_.pop_back();
    ++called_;
    callback();
  }
}

void HeadlessQueue::CallSockets() {
  const std::uint64_t poll = polls_;
  for (std::size_t i = 0; poll == polls_ && i < ready_.size(); ++i) {
    const ReadySocket ready = ready_[i];
    const auto watch =
        std::find_if(watches_.begin(), watches_.end(), [&](const Watch& each) { return each.id == ready.watch; });
    if (watch == watches_.end()) continue;
    const auto callback = watch->callback;  // a copy: it may end its own watch
    ++called_;
    callback(ready.events);
  }
}

void HeadlessQueue::CallPosted() {
  const std::uint64_t newest = last_id_;
  while (!posted_.empty() && posted_.front().id <= newest) {
    const auto callback = std::move(posted_.front().callback);
    posted_.pop_front();
    ++called_;
    callback();
  }
}

}  // namespace orbelcast
