#include "dispatch/kept_call.h"

#include <utility>

namespace orbelcast::server {

namespace {

/// A reference whose variable can be copied; any other is an error that the call finds before it waits.
bool RefersToValue(const Variant& value) {
  return value.type == kReference && value.reference != nullptr && value.reference->type != kReference;
}

bool Same(const Variant& left, const Variant& right) {
  return left.type == right.type && left.size == right.size && left.i64 == right.i64 && left.owner == right.owner;
}

}  // namespace

KeptCall::KeptCall(const Arguments& given)
    : variables_(given.count), names_(given.names, given.names + given.named_count) {
  for (std::uint32_t i = 0; i < given.count; ++i) {
    const Variant& value = given.values[i];
    if (RefersToValue(value)) {
      variables_[i] = Copy(*value.reference);
      values_.push_back(MakeReference(variables_[i]));
    } else {
      values_.push_back(Copy(value));
    }
  }
  before_ = variables_;
  arguments_.values = values_.data();
  arguments_.count = given.count;
  arguments_.named_count = given.named_count;
  arguments_.names = names_.data();
}

KeptCall::~KeptCall() {
  for (Variant& variable : variables_) Clear(variable);
  Clear(result);
}

// A value that is no number or text is copied as it is: no member takes it, and the call says so before it waits.
Variant KeptCall::Copy(const Variant& value) {
  Variant copy = value;
  copy.owner = nullptr;
  if (value.type == kText && value.text != nullptr) {
    copy.text = texts_.emplace_back(value.text, value.size).data();
  }
  return copy;
}

void KeptCall::HandOver(const Arguments& given, Variant* target) {
  for (std::uint32_t i = 0; i < given.count; ++i) {
    if (!RefersToValue(given.values[i]) || Same(variables_[i], before_[i])) continue;
    Clear(*given.values[i].reference);
    *given.values[i].reference = std::exchange(variables_[i], Variant{});
  }
  if (target != nullptr) *target = std::exchange(result, Variant{});
}

}  // namespace orbelcast::server
