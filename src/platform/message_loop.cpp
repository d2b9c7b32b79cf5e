#include "platform/message_loop.h"

#include <utility>

namespace orbelcast {

Completion::Waiter::Waiter(Completion& completion, std::function<void()> wake)
    : completion_(&completion), wake_(std::move(wake)) {
  if (completion.done_) {
    completion_ = nullptr;
    woken_ = true;
    return;
  }
  Waiter** last = &completion.first_;
  while (*last != nullptr) last = &(*last)->next_;
  *last = this;
}

Completion::Waiter::~Waiter() {
  if (completion_ == nullptr) return;
  for (Waiter** link = &completion_->first_; *link != nullptr; link = &(*link)->next_) {
    if (*link == this) {
      *link = next_;
      return;
    }
  }
}

void Completion::Complete() {
  done_ = true;
  // All are unlinked before the first is woken: waking may destroy this completion, or a waiter.
  for (Waiter* waiter = first_; waiter != nullptr; waiter = waiter->next_) {
    waiter->woken_ = true;
    waiter->completion_ = nullptr;
  }
  Waiter* waiter = std::exchange(first_, nullptr);
  while (waiter != nullptr) {
    Waiter* next = waiter->next_;
    if (waiter->wake_) waiter->wake_();
    waiter = next;
  }
}

}  // namespace orbelcast
