#include "adapters/qt/qt_queue.h"

#include <QCoreApplication>
#include <QEvent>
#include <algorithm>
#include <chrono>
#include <utility>

namespace orbelcast {

namespace {

const auto kPostedEvent = static_cast<QEvent::Type>(QEvent::registerEventType());

// A notifier may be what is calling at this moment: it is silenced at once and deleted when the loop comes round.
void Retire(std::unique_ptr<QSocketNotifier> notifier) {
  if (!notifier) return;
  notifier->setEnabled(false);
  notifier.release()->deleteLater();
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
  Watch& watch = watches_[socket];
  watch.id = ++last_id_;
  watch.callback = std::move(callback);
  if (events.readable) watch.readable = Notify(socket, QSocketNotifier::Read, watch.id);
  if (events.writable) watch.writable = Notify(socket, QSocketNotifier::Write, watch.id);
}

std::unique_ptr<QSocketNotifier> QtQueue::Notify(int socket, QSocketNotifier::Type type, std::uint64_t watch) {
  auto notifier = std::make_unique<QSocketNotifier>(socket, type);
  const SocketEvents events{type == QSocketNotifier::Read, type == QSocketNotifier::Write};
  QObject::connect(notifier.get(), &QSocketNotifier::activated, this,
                   [this, socket, watch, events] { CallSocket(socket, watch, events); });
  return notifier;
}

void QtQueue::UnwatchSocket(int socket) {
  auto watch = watches_.extract(socket);
  if (watch.empty()) return;
  Retire(std::move(watch.mapped().readable));
  Retire(std::move(watch.mapped().writable));
}

void QtQueue::CallSocket(int socket, std::uint64_t watch, SocketEvents events) {
  const auto found = watches_.find(socket);
  if (found == watches_.end() || found->second.id != watch) return;
  const auto callback = found->second.callback;  // A copy: it may end its own watch.
  callback(events);
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
