#include "player/player_life.h"

#include <utility>

namespace orbelcast {

void PlayerLife::Start(std::function<void()> handler) {
  loop_.RunHandler([this, handler = std::move(handler)] {
    const auto alive = StayAlive();
    if (alive && !ended_) handler();
  });
}

bool PlayerLife::Yield() {
  loop_.Yield();
  return !ended_;
}

bool PlayerLife::Open(Window& window) {
  if (ended_) return false;
  window.ShowModal(loop_);
  return !ended_;
}

}  // namespace orbelcast
