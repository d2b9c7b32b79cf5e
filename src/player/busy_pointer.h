#pragma once

#include "toolkit/property.h"

namespace orbelcast {

/// A mouse pointer that is an hourglass as long as anything is waited for, and the usual one otherwise.
class BusyPointer {
 public:
  static constexpr int kDefault = 0;
  static constexpr int kHourglass = 11;

  /// `pointer` outlives this object and its scopes.
  explicit BusyPointer(Property<int>& pointer) : pointer_(pointer) {}

  /// Busy from its making to its end.
  class Scope {
   public:
    explicit Scope(BusyPointer& pointer) : pointer_(pointer) { pointer_.Count(1); }
    ~Scope() { pointer_.Count(-1); }
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;

   private:
    BusyPointer& pointer_;
  };

  /// The control has ended: its pointer stays as it is.
  void End() { ended_ = true; }

 private:
  void Count(int more) {
    busy_ += more;
    if (!ended_) pointer_ = busy_ > 0 ? kHourglass : kDefault;
  }

  Property<int>& pointer_;
  int busy_ = 0;
  bool ended_ = false;
};

}  // namespace orbelcast
