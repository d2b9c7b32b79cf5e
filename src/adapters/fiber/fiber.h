#pragma once

#include <boost/context/fiber.hpp>
#include <cstddef>
#include <functional>

namespace orbelcast {

/// A stack of its own for one piece of work after another, which can be left in the middle and come back to.
///
/// Everything happens on one thread. The caller that starts or resumes a fiber gets control back when it suspends or
/// its work ends, so a fiber may resume others at any point. Boost.Context maps the stack and switches to it; each
/// switch is announced to the address and thread sanitizers, and takes the exceptions that are being handled with it,
/// neither of which the system's Boost does.
class Fiber {
 public:
  /// The size of a stack: hosts run code of their own on it, dialogs included. Pages cost memory once touched. Larger
  /// with a sanitizer, whose frames are several times the usual size.
  static const std::size_t kStackBytes;

  /// Maps a stack; `Usable` is false where the system has no memory for it.
  Fiber();
  /// The work must have ended.
  ~Fiber();
  Fiber(const Fiber&) = delete;
  Fiber& operator=(const Fiber&) = delete;

  bool Usable() const { return static_cast<bool>(place_); }
  /// True from Start until the work has ended.
  bool Busy() const { return busy_; }

  /// Runs `work` until it ends or suspends. An exception that leaves it is swallowed.
  void Start(std::function<void()> work);
  /// Continues where the work suspended.
  void Resume();
  /// Called by the work itself: returns control to the last resumer.
  void Suspend();

 private:
  boost::context::fiber Run(boost::context::fiber&& resumer);
  void Leave();
  void TellOfLeaving(void** fake_stack);
  void TellOfArrival(void* fake_stack);

  boost::context::fiber place_;    // the fiber's context while it is suspended
  boost::context::fiber resumer_;  // its resumer's context while it runs
  std::function<void()> work_;
  bool busy_ = false;
  bool quit_ = false;

  // For the sanitizers' annotations.
  boost::context::stack_context stack_;
  [[maybe_unused]] void* fake_stack_ = nullptr;
  [[maybe_unused]] const void* resumer_stack_ = nullptr;
  [[maybe_unused]] std::size_t resumer_stack_bytes_ = 0;
  [[maybe_unused]] void* tsan_fiber_ = nullptr;
  [[maybe_unused]] void* tsan_resumer_ = nullptr;
};

}  // namespace orbelcast
