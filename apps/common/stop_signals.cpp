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
volatile std::sig_atomic_t g_stopped = 0;
volatile std::sig_atomic_t g_hung_up = 0;

void NoteSignal(volatile std::sig_atomic_t& came) {
  came = 1;
  const int saved_errno = errno;
  const std::uint64_t one = 1;
  static_cast<void>(!::write(g_noted, &one, sizeof one));
  errno = saved_errno;
}

void NoteStop(int) {
  NoteSignal(g_stopped);
}

void NoteHangUp(int) {
  NoteSignal(g_hung_up);
}

bool Take(volatile std::sig_atomic_t& came) {
  if (came == 0) return false;
  came = 0;
  return true;
}

}  // namespace

StopSignals::StopSignals(EventQueue& queue, std::function<void()> on_stop, std::function<void()> on_hang_up)
    : queue_(queue), noted_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  if (!noted_.IsOpen()) return;  // Ctrl-C then ends the program as it always does.
  g_noted = noted_.Number();
  queue_.WatchSocket(noted_.Number(), {.readable = true},
                     [noted = noted_.Number(), on_stop = std::move(on_stop), on_hang_up](EventQueue::SocketEvents) {
                       std::uint64_t count = 0;
                       static_cast<void>(!::read(noted, &count, sizeof count));
                       if (Take(g_hung_up)) on_hang_up();
                       if (Take(g_stopped)) on_stop();
                     });
  struct sigaction stop = {};
  stop.sa_handler = NoteStop;
  stop.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
  struct sigaction hang_up = {};
  hang_up.sa_handler = NoteHangUp;
  hang_up.sa_flags = SA_RESTART;
  for (std::size_t i = 0; i < kSignals.size(); ++i) {
    ::sigaction(kSignals[i], nullptr, &old_[i]);
    const bool ends = kSignals[i] != SIGHUP || !on_hang_up;
    const bool ignored = kSignals[i] == SIGHUP && old_[i].sa_handler == SIG_IGN;
    if (!ends || !ignored) ::sigaction(kSignals[i], ends ? &stop : &hang_up, nullptr);
  }
}

StopSignals::~StopSignals() {
  if (!noted_.IsOpen()) return;
  for (std::size_t i = 0; i < kSignals.size(); ++i) ::sigaction(kSignals[i], &old_[i], nullptr);
  queue_.UnwatchSocket(noted_.Number());
  g_noted = -1;
  g_stopped = 0;
  g_hung_up = 0;
}

}  // namespace orbelcast
