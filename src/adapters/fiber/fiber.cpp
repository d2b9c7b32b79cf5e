#include "adapters/fiber/fiber.h"

#include <cxxabi.h>
#include <sys/mman.h>
#include <unistd.h>

#include <boost/context/detail/fcontext.hpp>
#include <cassert>
#include <cstring>
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

namespace context = boost::context::detail;

// A frame larger than a page could step over a guard of one page.
constexpr std::size_t kGuardBytes = 64 * 1024;

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
/// What a handler may use of stack: hosts run code of their own on it, dialogs included. Pages cost memory once
/// touched.
const std::size_t Fiber::kStackBytes = 1024 * 1024;
#endif

struct Fiber::Entry {
  static void Run(context::transfer_t from) {
    auto& fiber = *static_cast<Fiber*>(from.data);
    fiber.resumer_ = from.fctx;
#ifdef ORBELCAST_ASAN
    __sanitizer_finish_switch_fiber(nullptr, &fiber.resumer_stack_, &fiber.resumer_stack_bytes_);
#endif
    fiber.Loop();
    fiber.LeaveStack(End::kForGood);
  }
};

Fiber::Fiber() {
  void* memory = mmap(nullptr, kGuardBytes + kStackBytes, PROT_READ | PROT_WRITE,
                      MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE | MAP_STACK, -1, 0);
  if (memory == MAP_FAILED) return;
  mapping_ = static_cast<std::byte*>(memory);
  stack_ = mapping_ + kGuardBytes;
  // Without its guard an overflow would write into somebody else's memory: then rather no stack.
  if (mprotect(mapping_, kGuardBytes, PROT_NONE) != 0) return;
  context_ = context::make_fcontext(stack_ + kStackBytes, kStackBytes, &Entry::Run);
#ifdef ORBELCAST_TSAN
  tsan_fiber_ = __tsan_create_fiber(0);
#endif
}

Fiber::~Fiber() {
  assert(!busy_);
  if (context_ != nullptr) {
    quit_ = true;
    Resume();  // The sanitizers want to see a fiber leave its stack.
  }
#ifdef ORBELCAST_TSAN
  if (tsan_fiber_ != nullptr) __tsan_destroy_fiber(tsan_fiber_);
#endif
  if (mapping_ == nullptr) return;
#ifdef ORBELCAST_ASAN
  ASAN_UNPOISON_MEMORY_REGION(stack_, kStackBytes);
#endif
  munmap(mapping_, kGuardBytes + kStackBytes);
}

void Fiber::Start(std::function<void()> work) {
  work_ = std::move(work);
  busy_ = true;
  Resume();
}

void Fiber::Resume() {
  ExceptionState mine = ExceptionState::Exchange({});
#ifdef ORBELCAST_ASAN
  void* fake_stack = nullptr;
  __sanitizer_start_switch_fiber(&fake_stack, stack_, kStackBytes);
#endif
#ifdef ORBELCAST_TSAN
  tsan_resumer_ = __tsan_get_current_fiber();
  __tsan_switch_to_fiber(tsan_fiber_, 0);
#endif
  context_ = context::jump_fcontext(context_, this).fctx;
#ifdef ORBELCAST_ASAN
  __sanitizer_finish_switch_fiber(fake_stack, nullptr, nullptr);
#endif
  ExceptionState::Exchange(mine);
}

void Fiber::Suspend() {
  const ExceptionState mine = ExceptionState::Exchange({});
  LeaveStack(End::kNo);
  ExceptionState::Exchange(mine);
}

void Fiber::LeaveStack(End end) {
#ifdef ORBELCAST_ASAN
  __sanitizer_start_switch_fiber(end == End::kForGood ? nullptr : &fake_stack_, resumer_stack_, resumer_stack_bytes_);
#else
  static_cast<void>(end);
#endif
#ifdef ORBELCAST_TSAN
  __tsan_switch_to_fiber(tsan_resumer_, 0);
#endif
  resumer_ = context::jump_fcontext(resumer_, nullptr).fctx;
#ifdef ORBELCAST_ASAN
  __sanitizer_finish_switch_fiber(fake_stack_, &resumer_stack_, &resumer_stack_bytes_);
#endif
}

void Fiber::Loop() {
  while (!quit_) {
    if (busy_) {
      try {
        work_();
      } catch (...) {  // NOLINT(bugprone-empty-catch): nothing crosses the loop.
      }
      work_ = nullptr;
      busy_ = false;
    }
    LeaveStack(End::kNo);
  }
}

}  // namespace orbelcast
