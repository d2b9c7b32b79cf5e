#include "adapters/fiber/fiber_loop.h"

#include <algorithm>
#include <cassert>
#include <utility>

#include "adapters/fiber/fiber.h"

namespace orbelcast {

namespace {

struct CompleteAtEnd {
  Completion& completion;
  ~CompleteAtEnd() { completion.Complete(); }
};

}  // namespace

FiberLoop::FiberLoop(EventQueue& queue)
    : queue_(queue),
      fresh_for_(queue.FreshFor()),
      turns_a_look_(fresh_for_ > EventQueue::Nanoseconds::zero() ? kTurnsALook : 1),
      self_(this, [](FiberLoop*) { /* refers, does not own */ }) {
  idle_.reserve(kIdleStacks);
}

FiberLoop::~FiberLoop() {
  EndHandlers();
}

void FiberLoop::EndHandlers() {
  assert(current_ == nullptr);
  closing_ = true;
  self_.reset();
  while (!busy_.empty()) Enter(*busy_.front(), nullptr);
}

void FiberLoop::RunHandler(std::function<void()> handler) {
  if (started_ != nullptr) {
    started_->push_back(std::make_shared<Completion>());
    handler = [ended = started_->back(), handler = std::move(handler)] {
      const CompleteAtEnd complete{*ended};
      handler();
    };
  }
  std::unique_ptr<Fiber> fiber;
  if (idle_.empty()) {
    fiber = std::make_unique<Fiber>();
  } else {
    fiber = std::move(idle_.back());
    idle_.pop_back();
  }
  if (!fiber->Usable()) {
    try {
      handler();
    } catch (...) {  // NOLINT(bugprone-empty-catch): as on a stack of its own.
    }
    return;
  }
  Fiber& started = *fiber;
  busy_.push_back(std::move(fiber));
  Enter(started, std::move(handler));
}

// Notes the handlers that the action itself starts, not those that they start in turn.
void FiberLoop::RunToEnd(const std::function<void()>& action) {
  Started started;
  Started* const outer = std::exchange(started_, &started);
  action();
  started_ = outer;
  for (const auto& ended : started) Wait(*ended);
}

void FiberLoop::Yield() {
  if (closing_ || queue_.Now() < fresh_until_) return;
  if (current_ == nullptr) {
    queue_.HandleDue();
    Looked();
    return;
  }
  PostResumption(*current_);
  Suspend();
}

void FiberLoop::Wait(Completion& completion) {
  if (closing_) return;
  Fiber* const waiting = current_;
  if (waiting == nullptr) {
    const Completion::Waiter waiter(completion, nullptr);
    while (!waiter.Woken() && !closing_) {
      queue_.HandleNext();
      Looked();
    }
    return;
  }
  const Completion::Waiter waiter(completion, [this, waiting] { PostResumption(*waiting); });
  if (!waiter.Woken()) Suspend();
}

void FiberLoop::Enter(Fiber& fiber, std::function<void()> work) {
  Fiber* const resumer = std::exchange(current_, &fiber);
  Started* const noting = std::exchange(started_, nullptr);
  if (fiber.Busy()) {
    fiber.Resume();
  } else {
    fiber.Start(std::move(work));
  }
  current_ = resumer;
  started_ = noting;
  if (!fiber.Busy()) Retire(fiber);
}

void FiberLoop::PostResumption(Fiber& fiber) {
  queue_.Post([self = std::weak_ptr(self_), &fiber] {
    if (const auto loop = self.lock()) {
      loop->Looked();
      loop->Enter(fiber, nullptr);
    }
  });
}

void FiberLoop::Suspend() {
  Started* const noting = started_;
  current_->Suspend();
  started_ = noting;
}

void FiberLoop::Retire(Fiber& fiber) {
  const auto place = std::find_if(busy_.begin(), busy_.end(), [&](const auto& each) { return each.get() == &fiber; });
  if (idle_.size() < kIdleStacks) idle_.push_back(std::move(*place));
  busy_.erase(place);
}

}  // namespace orbelcast
