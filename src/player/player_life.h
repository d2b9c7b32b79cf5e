#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "platform/message_loop.h"
#include "toolkit/controls.h"

namespace orbelcast {

/// The player's life: from when it is made until its host releases it. Its parts begin their handlers here, and ask
/// here after each yield or wait whether they go on.
///
/// Its memory may outlive it: a handler that waits while the host releases the player returns into memory that is still
/// there, and ends without another step.
class PlayerLife {
 public:
  /// `loop` outlives this object.
  explicit PlayerLife(MessageLoop& loop) : loop_(loop) {}
  PlayerLife(const PlayerLife&) = delete;
  PlayerLife& operator=(const PlayerLife&) = delete;

  /// The player was made; `memory` refers to it.
  void Begin(std::weak_ptr<const void> memory) { memory_ = std::move(memory); }
  /// The host has released the player.
  void End() { ended_ = true; }
  bool Ended() const { return ended_; }

  /// Keeps the player's memory for as long as it is held.
  std::shared_ptr<const void> StayAlive() const { return memory_.lock(); }
  /// Starts a handler of the message loop that keeps the player's memory until it ends. Nothing where the player has
  /// ended.
  void Start(std::function<void()> handler);

  /// Yields to the message loop. False where the host has released the player meanwhile.
  bool Yield();
  /// Shows a window until it is closed. False where the host has released the player before or meanwhile.
  bool Open(Window& window);

 private:
  MessageLoop& loop_;
  std::weak_ptr<const void> memory_;
  bool ended_ = false;
};

}  // namespace orbelcast
