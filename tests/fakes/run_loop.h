#pragma once

#include <chrono>
#include <functional>

#include "platform/event_queue.h"

namespace orbelcast::fakes {

/// Runs the loop for `time`, or until `done`; answers whether it was done.
inline bool RunLoop(
    EventQueue& queue, std::chrono::milliseconds time, const std::function<bool()>& done = [] { return false; }) {
  const auto end = queue.Now() + time;
  // A pulse, so that a quiet loop looks at the time as well.
  while (queue.Now() < end && !done()) {
    const auto pulse = queue.ArmTimer(std::chrono::milliseconds(10), [] {});
    queue.HandleNext();
    queue.CancelTimer(pulse);
  }
  return done();
}

}  // namespace orbelcast::fakes
