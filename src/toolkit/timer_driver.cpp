#include "toolkit/timer_driver.h"

#include <algorithm>
#include <utility>

namespace orbelcast {

// Shared with the tick that is running, which may outlive the driver.
struct TimerDriver::State {
  State(MessageLoop& message_loop, Timer& driven, std::function<void()> on_tick, bool ticks_overlap)
      : loop(message_loop), timer(driven), tick(std::move(on_tick)), overlapping(ticks_overlap) {}

  MessageLoop& loop;
  Timer& timer;
  std::function<void()> tick;
  const bool overlapping;
  std::weak_ptr<State> self;
  Connection interval_changed;
  Connection enabled_changed;
  EventQueue::TimerId armed = 0;
  EventQueue::Nanoseconds due{};
  std::uint64_t series = 0;  // of ticks: each start of the timer begins one
  bool stopped = false;

  EventQueue::Nanoseconds Period() const { return std::chrono::milliseconds(timer.Interval); }

  void Disarm() {
    if (armed != 0) loop.Queue().CancelTimer(std::exchange(armed, 0));
  }

  void Restart() {
    Disarm();
    ++series;
    if (stopped || !timer.Enabled || timer.Interval <= 0) return;
    due = loop.Queue().Now() + Period();
    Arm();
  }

  void Arm() {
    armed = loop.Queue().ArmTimer(due - loop.Queue().Now(), [this] {
      armed = 0;
      if (overlapping) ArmAfterNow();
      loop.RunHandler([this] { Tick(); });
    });
  }

  // The first end of a period that is still to come.
  void ArmAfterNow() {
    const auto late = std::max(loop.Queue().Now() - due, EventQueue::Nanoseconds::zero());
    due += (late / Period() + 1) * Period();
    Arm();
  }

  void Tick() {
    const std::shared_ptr<State> alive = self.lock();
    if (overlapping) {
      tick();
      return;
    }
    const std::uint64_t mine = series;
    due += Period();
    tick();
    if (stopped || mine != series) return;
    due = std::max(due, loop.Queue().Now());
    Arm();
  }
};

TimerDriver::TimerDriver(MessageLoop& loop, Timer& timer, std::function<void()> tick, Ticks ticks)
    : state_(std::make_shared<State>(loop, timer, std::move(tick), ticks == Ticks::kOverlapping)) {
  State* state = state_.get();
  state->self = state_;
  state->interval_changed = timer.Interval.Changed.Connect([state](int) { state->Restart(); });
  state->enabled_changed = timer.Enabled.Changed.Connect([state](bool) { state->Restart(); });
  state->Restart();
}

TimerDriver::~TimerDriver() {
  state_->stopped = true;
  state_->Disarm();
  state_->interval_changed.Disconnect();
  state_->enabled_changed.Disconnect();
}

}  // namespace orbelcast
