#pragma once

#include <cstddef>
#include <functional>

namespace orbelcast {

/// A stack of its own for one piece of work after another, which can be left in the middle and come back to.
///
/// Everything happens on one thread. Whoever starts or resumes a fiber gets control back when it suspends or its work
/// ends, so a fiber may resume others from wherever it stands. Each switch is announced to the address and thread
/// sanitizers, and takes the exceptions that are being handled with it.
class Fiber {
 public:
  /// What a handler may use: hosts run code of their own on it, dialogs included. Pages cost memory once touched. The
  /// sanitizers' frames are several times the usual size.
  static const std::size_t kStackBytes;

  /// Maps a stack; `Usable` is false where the system has no memory for it.
  Fiber();
  /// The work must have ended.
  ~Fiber();
  Fiber(const Fiber&) = delete;
  Fiber& operator=(const Fiber&) = delete;

  bool Usable() const { return context_ != nullptr; }
  /// True from Start until the work has ended.
  bool Busy() const { return busy_; }

  /// Runs `work` until it ends or suspends. An exception that leaves it is swallowed.
  void Start(std::function<void()> work);
  /// Goes on where the work suspended.
  void Resume();
  /// Called by the work itself: goes back to whoever resumed it last.
  void Suspend();

 private:
  struct Entry;
  enum class End { kNo, kForGood };
  void Loop();
  void LeaveStack(End end);

  std::byte* mapping_ = nullptr;
  std::byte* stack_ = nullptr;  // lowest usable address
  void* context_ = nullptr;     // where the fiber stands while it is left
  void* resumer_ = nullptr;     // where its resumer stands while it runs
  std::function<void()> work_;
  bool busy_ = false;
  bool quit_ = false;

  // What the sanitizers want to be told.
  [[maybe_unused]] void* fake_stack_ = nullptr;
  [[maybe_unused]] const void* resumer_stack_ = nullptr;
  [[maybe_unused]] std::size_t resumer_stack_bytes_ = 0;
  [[maybe_unused]] void* tsan_fiber_ = nullptr;
  [[maybe_unused]] void* tsan_resumer_ = nullptr;
};

}  // namespace orbelcast
