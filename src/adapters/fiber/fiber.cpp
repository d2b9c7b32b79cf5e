#include "adapters/fiber/fiber.h"

#include <cxxabi.h>
#include <sys/mman.h>

#include <boost/context/fiber.hpp>
#include <boost/context/protected_fixedsize_stack.hpp>
#include <cassert>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ORBELCAST_ASAN 1
#endif
#if __has_feature(thread_sanitizer)
#define ORBELCAST_TSAN 1
#endif
#endif
#if defined(__SANITIZE_ADDRESS__)
#define ORBELCAST_ASAN 1
#endif
#if defined(__SANITIZE_THREAD__)
#define ORBELCAST_TSAN 1
#endif

#ifdef ORBELCAST_ASAN
#include <sanitizer/asan_interface.h>
#include <sanitizer/common_interface_defs.h>
#endif
#ifdef ORBELCAST_TSAN
#include <sanitizer/tsan_interface.h>
#endif

namespace orbelcast {

namespace {

namespace context = boost::context;

/// A frame larger than a page could step over a guard of one page.
constexpr std::size_t kGuardBytes = 64 * 1024;

void* LowestOf(const context::stack_context& stack) {
  return static_cast<std::byte*>(stack.sp) - stack.size;
}

/// Boost's stack with a larger guard. Where there is no memory for one it throws std::bad_alloc.
struct GuardedStack : context::protected_fixedsize_stack {
  using Base = context::protected_fixedsize_stack;
  GuardedStack() : Base(Fiber::kStackBytes + kGuardBytes) {}

  // NOLINTBEGIN(readability-identifier-naming): so Boost calls them.
  context::stack_context allocate() {
    context::stack_context stack = Base::allocate();
    // Without its guard an overflow would write into other memory: then there is no stack.
    if (::mprotect(LowestOf(stack), kGuardBytes, PROT_NONE) == 0) return stack;
    Base::deallocate(stack);
    throw std::bad_alloc();
  }
  void deallocate(context::stack_context& stack) {
#ifdef ORBELCAST_ASAN
    ASAN_UNPOISON_MEMORY_REGION(LowestOf(stack), stack.size);
#endif
    Base::deallocate(stack);
  }
  // NOLINTEND(readability-identifier-naming)
};

// The exceptions that are being handled, as the C++ ABI keeps them: one list a thread. A fiber that is left inside a
// catch block must find its own again.
struct ExceptionState {
  void* caught = nullptr;
  unsigned int uncaught = 0;
#ifdef __ARM_EABI_UNWINDER__
  void* propagating = nullptr;
#endif

  static ExceptionState Exchange(const ExceptionState& next) {
    ExceptionState last;
    void* globals = abi::__cxa_get_globals();
    std::memcpy(&last, globals, sizeof last);
    std::memcpy(globals, &next, sizeof next);
    return last;
  }
};

}  // namespace

#if defined(ORBELCAST_ASAN) || defined(ORBELCAST_TSAN)
const std::size_t Fiber::kStackBytes = 4 * 1024 * 1024;
#else
/// Enough for the code that hosts run on it, dialogs included. Pages cost memory once touched.
const std::size_t Fiber::kStackBytes = 1024 * 1024;
#endif

Fiber::Fiber() {
  GuardedStack stacks;
  try {
    stack_ = stacks.allocate();
  } catch (const std::bad_alloc&) {
    return;
  }
#ifdef ORBELCAST_TSAN
  tsan_fiber_ = __tsan_create_fiber(0);
  // Boost enters the stack once already here.
  tsan_resumer_ = __tsan_get_current_fiber();
  __tsan_switch_to_fiber(tsan_fiber_, 0);
#endif
  place_ = context::fiber(std::allocator_arg, context::preallocated(stack_.sp, stack_.size, stack_), stacks,
                          [this](context::fiber&& resumer) { return Run(std::move(resumer)); });
#ifdef ORBELCAST_TSAN
  __tsan_switch_to_fiber(tsan_resumer_, 0);
#endif
}

// The fiber ends by itself: a stack that Boost has to unwind throws an exception through the frames on it.
Fiber::~Fiber() {
  assert(!busy_);
  quit_ = true;
  if (Usable()) Resume();
#ifdef ORBELCAST_TSAN
  if (tsan_fiber_ != nullptr) __tsan_destroy_fiber(tsan_fiber_);
#endif
}

void Fiber::Start(std::function<void()> work) {
  work_ = std::move(work);
  busy_ = true;
  Resume();
}

void Fiber::Resume() {
  const ExceptionState mine = ExceptionState::Exchange({});
#ifdef ORBELCAST_ASAN
  void* fake_stack = nullptr;
  __sanitizer_start_switch_fiber(&fake_stack, LowestOf(stack_), stack_.size);
#endif
#ifdef ORBELCAST_TSAN
  tsan_resumer_ = __tsan_get_current_fiber();
  __tsan_switch_to_fiber(tsan_fiber_, 0);
#endif
  place_ = std::move(place_).resume();
#ifdef ORBELCAST_TSAN
  // A fiber that suspends has told so itself.
  if (!place_) __tsan_switch_to_fiber(tsan_resumer_, 0);
#endif
#ifdef ORBELCAST_ASAN
  __sanitizer_finish_switch_fiber(fake_stack, nullptr, nullptr);
#endif
  ExceptionState::Exchange(mine);
}

void Fiber::Suspend() {
  const ExceptionState mine = ExceptionState::Exchange({});
  Leave();
  ExceptionState::Exchange(mine);
}

void Fiber::Leave() {
  TellOfLeaving(&fake_stack_);
#ifdef ORBELCAST_TSAN
  // Not in a function of its own: each must end on the stack that it began on.
  __tsan_switch_to_fiber(tsan_resumer_, 0);
#endif
  resumer_ = std::move(resumer_).resume();
  TellOfArrival(fake_stack_);
}

/// The bottom of the fiber's stack, which Boost gives back at its end.
context::fiber Fiber::Run(context::fiber&& resumer) {
  resumer_ = std::move(resumer);
  TellOfArrival(nullptr);
  while (!quit_) {
    try {
      work_();
    } catch (...) {  // NOLINT(bugprone-empty-catch): nothing crosses the loop.
    }
    work_ = nullptr;
    busy_ = false;
    Leave();
  }
  TellOfLeaving(nullptr);
  return std::move(resumer_);
}

/// `fake_stack` keeps the address sanitizer's state of the stack; null where the stack is left for good.
void Fiber::TellOfLeaving([[maybe_unused]] void** fake_stack) {
#ifdef ORBELCAST_ASAN
  __sanitizer_start_switch_fiber(fake_stack, resumer_stack_, resumer_stack_bytes_);
#endif
}

void Fiber::TellOfArrival([[maybe_unused]] void* fake_stack) {
#ifdef ORBELCAST_ASAN
  __sanitizer_finish_switch_fiber(fake_stack, &resumer_stack_, &resumer_stack_bytes_);
#endif
}

}  // namespace orbelcast
