#pragma once

#include <unistd.h>

namespace orbelcast {

/// An open file, closed at its end.
class Descriptor {
 public:
  /// `number` is the result of open(2): negative where it failed.
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() {
    if (number_ >= 0) ::close(number_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int Number() const { return number_; }
  bool IsOpen() const { return number_ >= 0; }

 private:
  const int number_;
};

}  // namespace orbelcast
