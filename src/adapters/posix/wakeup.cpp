#include "adapters/posix/wakeup.h"

#include <sys/eventfd.h>

#include <utility>

namespace orbelcast {

Wakeup::Wakeup(EventQueue& queue, std::function<void()> woken)
    : queue_(queue), event_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  if (!event_.IsOpen()) return;
  queue_.WatchSocket(event_.Number(), {.readable = true}, [this, woken = std::move(woken)](EventQueue::SocketEvents) {
    eventfd_t count = 0;
    ::eventfd_read(event_.Number(), &count);
    woken();
  });
}

Wakeup::~Wakeup() {
  if (event_.IsOpen()) queue_.UnwatchSocket(event_.Number());
}

void Wakeup::Wake() const {
  if (event_.IsOpen()) ::eventfd_write(event_.Number(), 1);
}

}  // namespace orbelcast
