#include "common/stop_signals.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <utility>

namespace orbelcast {

namespace {

// A signal handler knows nothing but what is static; all it may do here is write to what the queue watches.
volatile std::sig_atomic_t g_noted = -1;

void NoteSignal(int) {
  const int saved_errno = errno;
  const std::uint64_t one = 1;
  static_cast<void>(!::write(g_noted, &one, sizeof one));
  errno = saved_errno;
}

}  // namespace

StopSignals::StopSignals(EventQueue& queue, std::function<void()> on_stop)
    : queue_(queue), noted_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  if (!noted_.IsOpen()) return;  // Ctrl-C then ends the program as it always does.
  g_noted = noted_.Number();
  queue_.WatchSocket(noted_.Number(), {.readable = true},
                     [noted = noted_.Number(), on_stop = std::move(on_stop)](EventQueue::SocketEvents) {
                       std::uint64_t count = 0;
                       static_cast<void>(!::read(noted, &count, sizeof count));
                       on_stop();
                     });
  struct sigaction action = {};
  action.sa_handler = NoteSignal;
  action.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
  for (std::size_t i = 0; i < kSignals.size(); ++i) {
    ::sigaction(kSignals[i], nullptr, &old_[i]);
    const bool ignored = kSignals[i] == SIGHUP && old_[i].sa_handler == SIG_IGN;
    if (!ignored) ::sigaction(kSignals[i], &action, nullptr);
  }
}

StopSignals::~StopSignals() {
  if (!noted_.IsOpen()) return;
  for (std::size_t i = 0; i < kSignals.size(); ++i) ::sigaction(kSignals[i], &old_[i], nullptr);
  queue_.UnwatchSocket(noted_.Number());
  g_noted = -1;
}

}  // namespace orbelcast
