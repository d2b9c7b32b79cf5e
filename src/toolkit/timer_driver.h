#pragma once

#include <functional>
#include <memory>

#include "platform/message_loop.h"
#include "toolkit/controls.h"

namespace orbelcast {

/// Makes a Timer tick on a message loop.
///
/// Each tick is a handler. Changing the interval or switching the timer on begins a new series of ticks, one period
/// from then on. As a rule a tick never starts while the last one of its series is still running: a period that ends
/// meanwhile gives one tick right after it, several give one. A tick of a former series, which may wait for long, holds
/// up none of the new one. Ticks keep the period's rhythm rather than adding up the time that the ticks themselves
/// take.
///
/// Ticks that may overlap fall due by the rhythm alone: one starts also while others wait or yield. Periods that end
/// while the thread is blocked give one tick together.
///
/// The driver must outlive neither the loop nor the timer. It may be destroyed from inside its own tick.
class TimerDriver {
 public:
  enum class Ticks { kOneAtATime, kOverlapping };

  /// `tick` runs on a handler's stack.
  TimerDriver(MessageLoop& loop, Timer& timer, std::function<void()> tick, Ticks ticks = Ticks::kOneAtATime);
  ~TimerDriver();
  TimerDriver(const TimerDriver&) = delete;
  TimerDriver& operator=(const TimerDriver&) = delete;

 private:
  struct State;
  std::shared_ptr<State> state_;
};

}  // namespace orbelcast
