#pragma once

#include <utility>

#include "toolkit/signal.h"

namespace orbelcast {

/// A value that notifies its listeners when it changes: once for each change, and only for real changes.
///
/// Reads like a plain value: `lStatus.Caption = text; if (VideoStream.Visible) …`.
template <typename T>
class Property {
 public:
  Property() = default;
  explicit Property(T value) : value_(std::move(value)) {}
  Property(const Property&) = delete;

  /// Sets the value and notifies the listeners, unless it has this value already.
  Property& operator=(T value) {
    if (value_ == value) return *this;
    value_ = std::move(value);
    Changed(value_);
    return *this;
  }
  Property& operator=(const Property& other) { return *this = other.value_; }

  // Implicit, so that a child control's field is used as the plain value.
  operator const T&() const { return value_; }
  const T& Get() const { return value_; }

  /// Tells the new value after each change.
  Signal<const T&> Changed;

 private:
  T value_{};
};

}  // namespace orbelcast
