#pragma once

#include <functional>
#include <utility>

#include "platform/message_loop.h"

namespace orbelcast::fakes {

/// A message loop in which, at one chosen yield or wait, something rude happens: the host releases the control,
/// disconnects it, calls it again. Run once to count the steps, then once for each of them.
class RudeLoop final : public MessageLoop {
 public:
  explicit RudeLoop(MessageLoop& loop) : loop_(loop) {}
  EventQueue& Queue() override { return loop_.Queue(); }
  void RunHandler(std::function<void()> handler) override { loop_.RunHandler(std::move(handler)); }
  void Yield() override {
    Step();
    loop_.Yield();
  }
  /// Two steps: while it waits, and when it is done but who waits does not know yet.
  void Wait(Completion& completion) override {
    const auto step = [this] {
      Queue().Post([this] {
        waiting = true;
        Step();
        waiting = false;
      });
    };
    step();
    const Completion::Waiter before(completion, step);
    loop_.Wait(completion);
  }

  int steps = 0;
  int rude_at = -1;
  bool waiting = false;  ///< The step is one of a wait.
  std::function<void()> act;

 private:
  void Step() {
    if (steps++ == rude_at) act();
  }
  MessageLoop& loop_;
};

}  // namespace orbelcast::fakes
