#pragma once

#include <csignal>
#include <functional>

#include "platform/event_queue.h"

namespace orbelcast {

/// Turns Ctrl-C (SIGINT) and SIGTERM into a call on the event queue, so that a program can end what it is doing. A
/// second one ends the program at once, as it would without this. One at a time in a process.
class StopSignals {
 public:
  StopSignals(EventQueue& queue, std::function<void()> on_stop);
  ~StopSignals();
  StopSignals(const StopSignals&) = delete;
  StopSignals& operator=(const StopSignals&) = delete;

 private:
  EventQueue& queue_;
  int pipe_[2] = {-1, -1};
  struct sigaction old_interrupt_ = {};
  struct sigaction old_terminate_ = {};
};

}  // namespace orbelcast
