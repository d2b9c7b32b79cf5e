#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

#include "platform/message_loop.h"

namespace orbelcast {

class Fiber;

/// The message loop over any event queue: `Yield` and `Wait` suspend only the handler that calls them.
///
/// A suspended handler is resumed by a posted call. The resumer (the toolkit's loop, a wait on the host's stack, a
/// dialog that runs a loop of its own inside another handler) gets control back when it suspends again.
///
/// The queue must outlive the loop. Destroying the loop ends its handlers (`EndHandlers`). It must not be destroyed
/// from inside a handler.
class FiberLoop final : public MessageLoop {
 public:
  /// Stacks that are kept for the next handler, the last used first. As many handlers of as many viewers wait at once.
  static constexpr std::size_t kIdleStacks = 256;
  /// Turns of a loop after which its yield reads the clock: together far shorter than a look counts as fresh.
  static constexpr unsigned kTurnsALook = 16;

  explicit FiberLoop(EventQueue& queue);
  ~FiberLoop() override;
  FiberLoop(const FiberLoop&) = delete;
  FiberLoop& operator=(const FiberLoop&) = delete;

  /// Resumes the handlers that are suspended, the oldest first; their yields and waits return at once, and so do all
  /// that follow, until every handler has ended. The owner of services that handlers use calls this before the first
  /// of them ends; not from inside a handler.
  void EndHandlers();

  EventQueue& Queue() override { return queue_; }
  /// Runs on the caller's stack where the system has no memory for another.
  void RunHandler(std::function<void()> handler) override;
  void RunToEnd(const std::function<void()>& action) override;
  void Yield() override;
  void YieldInTurn(unsigned turn) override {
    if (turn % turns_a_look_ == 0) Yield();
  }
  void Wait(Completion& completion) override;

  std::size_t Handlers() const override { return busy_.size(); }
  bool InHandler() const override { return current_ != nullptr; }

 private:
  using Started = std::vector<std::shared_ptr<Completion>>;

  void Enter(Fiber& fiber, std::function<void()> work);
  void PostResumption(Fiber& fiber);
  void Suspend();
  void Retire(Fiber& fiber);
  void Looked() { fresh_until_ = queue_.Now() + fresh_for_; }

  EventQueue& queue_;
  const EventQueue::Nanoseconds fresh_for_;
  const unsigned turns_a_look_;
  EventQueue::Nanoseconds fresh_until_ = EventQueue::Nanoseconds::min();
  bool closing_ = false;
  Fiber* current_ = nullptr;
  Started* started_ = nullptr;                // where the handlers of the innermost RunToEnd's action are noted
  std::vector<std::unique_ptr<Fiber>> busy_;  // the oldest first
  std::vector<std::unique_ptr<Fiber>> idle_;
  // The loop as a posted resumption refers to it, weakly: the queue may call that after the loop's end.
  std::shared_ptr<FiberLoop> self_;
};

}  // namespace orbelcast
