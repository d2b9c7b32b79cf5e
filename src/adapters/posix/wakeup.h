#pragma once

#include <functional>

#include "adapters/posix/descriptor.h"
#include "platform/event_queue.h"

namespace orbelcast {

/// Calls a function on a queue's thread when another thread asks for it: the one thing of a queue that any thread may
/// do.
///
/// Made and destroyed on the queue's thread, before the queue; nobody may be inside `Wake` at its end.
class Wakeup {
 public:
  /// `woken` runs as a callback of `queue`. A system that has no descriptor left never calls it.
  Wakeup(EventQueue& queue, std::function<void()> woken);
  ~Wakeup();
  Wakeup(const Wakeup&) = delete;
  Wakeup& operator=(const Wakeup&) = delete;

  /// Called on any thread; several calls may become one.
  void Wake() const;

 private:
  EventQueue& queue_;
  const Descriptor event_;
};

}  // namespace orbelcast
