#pragma once

#include <utility>

#include "toolkit/signal.h"

namespace orbelcast {

/// A value that tells whoever listens when it changes: once, from this one place, and only when it did change.
///
/// Reads like a plain value: `lStatus.Caption = text; if (VideoStream.Visible) …`.
template <typename T>
class Property {
 public:
  Property() = default;
  explicit Property(T value) : value_(std::move(value)) {}
  Property(const Property&) = delete;

  /// Sets the value and tells the listeners the new one. Setting the value it has tells nobody.
  Property& operator=(T value) {
    if (value_ == value) return *this;
    value_ = std::move(value);
    Changed(value_);
    return *this;
  }
  Property& operator=(const Property& other) { return *this = other.value_; }

  // Implicit, so that a child control's field is used as the plain value that it stands for.
  operator const T&() const { return value_; }
  const T& Get() const { return value_; }

  /// Tells the new value after each change.
  Signal<const T&> Changed;

 private:
  T value_{};
};

}  // namespace orbelcast
