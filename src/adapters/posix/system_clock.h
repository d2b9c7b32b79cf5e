#pragma once

#include "platform/clock.h"

namespace orbelcast {

/// The machine's clock in the user's time zone (TZ, else the system's).
class SystemClock final : public Clock {
 public:
  LocalTime Now() const override;
};

}  // namespace orbelcast
