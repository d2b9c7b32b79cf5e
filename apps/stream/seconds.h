#pragma once

#include <chrono>

#include "platform/event_queue.h"

namespace orbelcast {

/// A time as options have it, in seconds with decimals, as the queue counts it.
inline EventQueue::Nanoseconds Seconds(double seconds) {
  return std::chrono::duration_cast<EventQueue::Nanoseconds>(std::chrono::duration<double>(seconds));
}

}  // namespace orbelcast
