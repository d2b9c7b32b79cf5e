#pragma once

#include <array>
#include <csignal>
#include <functional>

#include "adapters/posix/descriptor.h"
#include "platform/event_queue.h"

namespace orbelcast {

/// Turns Ctrl-C (SIGINT), SIGTERM and SIGHUP into a call on the event queue, so that a program can end what it is
/// doing. A second one ends the program at once, as it would without this. A SIGHUP that the program was started to
/// ignore (nohup) stays ignored. One at a time in a process.
class StopSignals {
 public:
  /// With `on_hang_up` each SIGHUP calls that, and ends nothing.
  StopSignals(EventQueue& queue, std::function<void()> on_stop, std::function<void()> on_hang_up = nullptr);
  ~StopSignals();
  StopSignals(const StopSignals&) = delete;
  StopSignals& operator=(const StopSignals&) = delete;

 private:
  static constexpr std::array kSignals{SIGINT, SIGTERM, SIGHUP};

  EventQueue& queue_;
  const Descriptor noted_;  ///< An eventfd(2) that a signal writes to.
  std::array<struct sigaction, kSignals.size()> old_{};
};

}  // namespace orbelcast
