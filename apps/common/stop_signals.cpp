#include "common/stop_signals.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace orbelcast {

namespace {

// A signal handler knows nothing but what is static; all it may do here is write into the pipe that the queue watches.
volatile std::sig_atomic_t g_pipe_end = -1;

void NoteSignal(int) {
  const int saved_errno = errno;
  const char note = 0;
  static_cast<void>(!::write(g_pipe_end, &note, 1));
  errno = saved_errno;
}

}  // namespace

StopSignals::StopSignals(EventQueue& queue, std::function<void()> on_stop) : queue_(queue) {
  if (::pipe2(pipe_.data(), O_CLOEXEC | O_NONBLOCK) != 0) return;  // Ctrl-C then ends the program as it always does.
  g_pipe_end = pipe_[1];
  queue_.WatchSocket(pipe_[0], {.readable = true},
                     [end = pipe_[0], on_stop = std::move(on_stop)](EventQueue::SocketEvents) {
                       char note = 0;
                       while (::read(end, &note, 1) > 0) {
                       }
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
  if (pipe_[0] < 0) return;
  for (std::size_t i = 0; i < kSignals.size(); ++i) ::sigaction(kSignals[i], &old_[i], nullptr);
  queue_.UnwatchSocket(pipe_[0]);
  g_pipe_end = -1;
  ::close(pipe_[0]);
  ::close(pipe_[1]);
}

}  // namespace orbelcast
