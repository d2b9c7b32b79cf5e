#include "qt_common/qt_queue.h"

#include <poll.h>

#include <QCoreApplication>
#include <QEvent>
#include <algorithm>
#include <chrono>
#include <utility>

namespace orbelcast {

namespace {

const auto kPostedEvent = static_cast<QEvent::Type>(QEvent::registerEventType());

// The events that the socket is ready for at this moment. A notifier may call for an event that is over: its state
// is outdated when a callback before it ran a loop of its own.
EventQueue::SocketEvents ReadyFor(int socket, EventQueue::SocketEvents events) {
  pollfd look{socket, static_cast<short>((events.readable ? POLLIN : 0) | (events.writable ? POLLOUT : 0)), 0};
  if (poll(&look, 1, 0) <= 0) return {};
  const bool error = (look.revents & (POLLERR | POLLHUP | POLLNVAL)) != 0;
  return {error || (look.revents & POLLIN) != 0, error || (look.revents & POLLOUT) != 0};
}

}  // namespace

QtQueue::QtQueue() {
  wake_.setSingleShot(true);
  wake_.setTimerType(Qt::PreciseTimer);
  QObject::connect(&wake_, &QTimer::timeout, this, [this] { CallTimers(); });
}

QtQueue::~QtQueue() = default;

EventQueue::Nanoseconds QtQueue::Now() const {
  return std::chrono::steady_clock::now().time_since_epoch();
}

EventQueue::TimerId QtQueue::ArmTimer(Nanoseconds delay, std::function<void()> callback) {
  const Nanoseconds now = Now();
  const Nanoseconds due = now + std::clamp(delay, Nanoseconds::zero(), Nanoseconds::max() - now);
  const auto place = std::lower_bound(timers_.begin(), timers_.end(), due,
                                      [](const ArmedTimer& timer, Nanoseconds value) { return timer.due > value; });
  const TimerId id = ++last_id_;
  timers_.insert(place, {due, id, std::move(callback)});
  if (timers_.back().id == id) WakeForTimers();
  return id;
}

void QtQueue::CancelTimer(TimerId id) {
  std::erase_if(timers_, [id](const ArmedTimer& timer) { return timer.id == id; });
}

void QtQueue::WakeForTimers() {
  if (timers_.empty()) return;
  constexpr std::chrono::milliseconds kLongest{24 * 3600 * 1000};
  // Rounded up: a wake before the time would have to be followed by another.
  const auto wait = std::chrono::ceil<std::chrono::milliseconds>(timers_.back().due - Now());
  wake_.start(std::clamp(wait, std::chrono::milliseconds::zero(), kLongest));
}

void QtQueue::CallTimers() {
  const Nanoseconds now = Now();
  const TimerId newest = last_id_;
  while (!timers_.empty() && timers_.back().due <= now && timers_.back().id <= newest) {
    const auto callback = std::move(timers_.back().callback);
    timers_.pop_back();
    // The callback may run a loop of its own, which must find the next timer armed.
    WakeForTimers();
    callback();
  }
  WakeForTimers();
}

void QtQueue::WatchSocket(int socket, SocketEvents events, std::function<void(SocketEvents)> callback) {
  UnwatchSocket(socket);
  Watch* const spare = FindWatch(kNoSocket);
  Watch& watch = spare != nullptr ? *spare : MakeWatch();
  watch.socket = socket;
  watch.events = events;
  watch.callback = std::move(callback);
  watch.readable.setSocket(socket);
  watch.writable.setSocket(socket);
  watch.readable.setEnabled(events.readable);
  watch.writable.setEnabled(events.writable);
}

void QtQueue::UnwatchSocket(int socket) {
  Watch* const watch = FindWatch(socket);
  if (watch == nullptr) return;
  watch->readable.setEnabled(false);
  watch->writable.setEnabled(false);
  watch->socket = kNoSocket;
  watch->callback = nullptr;
}

QtQueue::Watch* QtQueue::FindWatch(int socket) const {
  const auto found = std::ranges::find_if(watches_, [socket](const auto& each) { return each->socket == socket; });
  return found == watches_.end() ? nullptr : found->get();
}

QtQueue::Watch& QtQueue::MakeWatch() {
  Watch& watch = *watches_.emplace_back(std::make_unique<Watch>());
  for (QSocketNotifier* notifier : {&watch.readable, &watch.writable}) {
    QObject::connect(notifier, &QSocketNotifier::activated, this, [&watch] { CallSocket(watch); });
  }
  return watch;
}

void QtQueue::CallSocket(const Watch& watch) {
  if (watch.socket == kNoSocket) return;
  const SocketEvents ready = ReadyFor(watch.socket, watch.events);
  if (!ready.readable && !ready.writable) return;
  const auto callback = watch.callback;  // A copy: it may end its own watch.
  callback(ready);
}

void QtQueue::Post(std::function<void()> callback) {
  posted_.push_back({++last_id_, std::move(callback)});
  if (!std::exchange(wake_posted_, true)) QCoreApplication::postEvent(this, new QEvent(kPostedEvent));
}

bool QtQueue::event(QEvent* event) {
  if (event->type() != kPostedEvent) return QObject::event(event);
  wake_posted_ = false;
  CallPosted();
  return true;
}

void QtQueue::CallPosted() {
  const std::uint64_t newest = last_id_;
  while (!posted_.empty() && posted_.front().id <= newest) {
    const auto callback = std::move(posted_.front().callback);
    posted_.pop_front();
    // The callback may run a loop of its own, in which the rest must not be forgotten.
    if (!posted_.empty() && !std::exchange(wake_posted_, true)) {
      QCoreApplication::postEvent(this, new QEvent(kPostedEvent));
    }
    callback();
  }
}

void QtQueue::HandleDue() {
  CallTimers();
  QCoreApplication::processEvents(QEventLoop::AllEvents);
}

void QtQueue::HandleNext() {
  QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
}

}  // namespace orbelcast
