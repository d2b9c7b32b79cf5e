#pragma once

#include <cstddef>
#include <functional>

#include "platform/event_queue.h"

namespace orbelcast {

/// Something that is waited for. Done once `Complete` was called, until `Reset`.
///
/// Several handlers may wait for one completion; each is woken, in the order in which they came. Destroying a
/// completion that is waited for wakes its waiters too.
class Completion {
 public:
  /// One wait in progress; lives on the waiting stack. Made by message loops.
  class Waiter {
   public:
    /// `wake` is called inside Complete and only makes a note (posts a resumption): it must not run the waiter itself.
    Waiter(Completion& completion, std::function<void()> wake);
    ~Waiter();
    Waiter(const Waiter&) = delete;
    Waiter& operator=(const Waiter&) = delete;

    /// True once the completion was completed or destroyed, whatever became of it since.
    bool Woken() const { return woken_; }

   private:
    friend class Completion;
    Completion* completion_;
    std::function<void()> wake_;
    Waiter* next_ = nullptr;
    bool woken_ = false;
  };

  Completion() = default;
  Completion(const Completion&) = delete;
  Completion& operator=(const Completion&) = delete;
  ~Completion() { Complete(); }

  bool IsDone() const { return done_; }
  void Complete();
  void Reset() { done_ = false; }

 private:
  Waiter* first_ = nullptr;
  bool done_ = false;
};

/// The one loop that everything runs on, as the controls see it.
///
/// A handler is started from outside: by a timer tick, a click, a list choice, a mouse press. `RunHandler` starts it on
/// a stack of its own, so a `Yield` or `Wait` inside it suspends that handler alone while every other one goes on. Only
/// on the host's own stack (a host that calls a method and expects it done) does a wait handle the queue itself.
class MessageLoop {
 public:
  virtual ~MessageLoop() = default;

  /// Timers, sockets and posted calls. Their callbacks run on the loop's stack: short work that never yields or waits;
  /// anything else goes through RunHandler.
  virtual EventQueue& Queue() = 0;

  /// Starts `handler` at once, on a stack of its own; returns when it has ended or waits for the first time. An
  /// exception that leaves a handler is swallowed: nothing crosses the loop.
  virtual void RunHandler(std::function<void()> handler) = 0;

  /// Calls `action` and returns when every handler that it started has ended, waiting where one of them does: the
  /// effects of a person's click are complete then. A loop without stacks for handlers has nothing to wait for.
  virtual void RunToEnd(const std::function<void()>& action) { action(); }

  /// Handlers that have begun and not ended, and whether the caller is one of them.
  virtual std::size_t Handlers() const { return 0; }
  virtual bool InHandler() const { return false; }

  /// Lets everything that is due be handled, then returns. Cheap when the queue was looked at just now.
  virtual void Yield() = 0;

  /// Yield, for a loop of many turns that take less than a microsecond each: `turn` counts them from 0. A loop that is
  /// cheap when the queue was looked at just now may leave out to ask whether it was, which costs more than such a
  /// turn, in all but a few of them.
  virtual void YieldInTurn(unsigned turn) {
    static_cast<void>(turn);
    Yield();
  }

  /// Returns once `completion` is done, running the loop meanwhile. Returns early when the loop is being destroyed.
  virtual void Wait(Completion& completion) = 0;
};

}  // namespace orbelcast
