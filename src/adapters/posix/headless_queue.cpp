#include "adapters/posix/headless_queue.h"

#include <sys/epoll.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <utility>

namespace orbelcast {

namespace {

/// With so many watches or fewer, polling all of them costs less than asking an epoll set.
constexpr std::size_t kFew = 8;
/// Looks after which a watch stands: a request's ends sooner.
constexpr int kStanding = 64;
/// Sockets of the epoll set taken at a look; the others are at the next one.
constexpr int kReadyAtALook = 64;

short ToPoll(EventQueue::SocketEvents events) {
  return static_cast<short>((events.readable ? POLLIN : 0) | (events.writable ? POLLOUT : 0));
}

}  // namespace

HeadlessQueue::HeadlessQueue() : epoll_(::epoll_create1(EPOLL_CLOEXEC)) {}

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
  watches_.push_back({.socket = socket, .id = ++last_id_, .events = events, .callback = std::move(callback)});
}

void HeadlessQueue::UnwatchSocket(int socket) {
  if (std::erase_if(watches_, [socket](const Watch& watch) { return watch.socket == socket; }) == 0 &&
      standing_.erase(socket) != 0) {
    ::epoll_ctl(epoll_.Number(), EPOLL_CTL_DEL, socket, nullptr);
  }
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
  for (const auto& [socket, each] : standing_) waits.sockets.push_back({socket, each.events});
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
    if (wait == Nanoseconds::zero() && watches_.empty() && standing_.empty()) return true;
    time.tv_sec = static_cast<time_t>(wait.count() / 1'000'000'000);
    time.tv_nsec = static_cast<long>(wait.count() % 1'000'000'000);
    limit = &time;
  }

  MoveStanding();
  polled_.clear();
  for (const Watch& watch : watches_) polled_.push_back({watch.socket, ToPoll(watch.events), 0});
  if (!standing_.empty()) polled_.push_back({epoll_.Number(), POLLIN, 0});
  const int found = ppoll(polled_.data(), static_cast<nfds_t>(polled_.size()), limit, nullptr);
  if (found < 0) return errno != EINTR;
  for (std::size_t i = 0; found > 0 && i < watches_.size(); ++i) NoteReady(watches_[i], polled_[i].revents);
  if (found > 0 && !standing_.empty() && polled_.back().revents != 0) NoteStandingReady();
  return true;
}

void HeadlessQueue::NoteReady(const Watch& watch, short seen) {
  if (seen == 0) return;
  const bool error = (seen & (POLLERR | POLLHUP | POLLNVAL)) != 0;
  ready_.push_back({watch.socket, watch.id, {error || (seen & POLLIN) != 0, error || (seen & POLLOUT) != 0}});
}

void HeadlessQueue::NoteStandingReady() {
  std::array<epoll_event, kReadyAtALook> events{};
  const int found = ::epoll_wait(epoll_.Number(), events.data(), kReadyAtALook, 0);
  for (int i = 0; i < found; ++i) {
    const epoll_event& event = events[static_cast<std::size_t>(i)];
    const auto watch = standing_.find(event.data.fd);
    // The bits of both calls are the same.
    if (watch != standing_.end()) NoteReady(watch->second, static_cast<short>(event.events));
  }
}

void HeadlessQueue::MoveStanding() {
  if (watches_.size() + standing_.size() <= kFew) return;
  constexpr int kMoved = -1;
  for (Watch& watch : watches_) {
    if (++watch.looks != kStanding) continue;
    epoll_event event{};
    event.events = static_cast<std::uint32_t>(ToPoll(watch.events));
    event.data.fd = watch.socket;
    // A file of the disk, and what the system refuses for want of memory, is polled on.
    if (::epoll_ctl(epoll_.Number(), EPOLL_CTL_ADD, watch.socket, &event) != 0) continue;
    standing_.emplace(watch.socket, watch);
    watch.socket = kMoved;
  }
  std::erase_if(watches_, [](const Watch& watch) { return watch.socket == kMoved; });
}

const HeadlessQueue::Watch* HeadlessQueue::FindWatch(int socket) const {
  const auto polled = std::ranges::find(watches_, socket, &Watch::socket);
  if (polled != watches_.end()) return &*polled;
  const auto standing = standing_.find(socket);
  return standing == standing_.end() ? nullptr : &standing->second;
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
    const Watch* const watch = FindWatch(ready.socket);
    if (watch == nullptr || watch->id != ready.watch) continue;
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
