#pragma once

namespace orbelcast {

/// A moment on the wall clock, in the user's time zone. Month and day count from 1, hours run 0 to 23.
struct LocalTime {
  int year = 2000;
  int month = 1;
  int day = 1;
  int hour = 0;
  int minute = 0;
  int second = 0;

  bool operator==(const LocalTime&) const = default;
};

/// The wall clock, for people. Pacing and time-outs use EventQueue::Now, which never jumps.
class Clock {
 public:
  virtual ~Clock() = default;
  virtual LocalTime Now() const = 0;
};

}  // namespace orbelcast
