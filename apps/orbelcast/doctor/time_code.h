#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/clock.h"

/// Time codes: fourteen digits, year to second, by which servers tell when a picture was taken.
namespace orbelcast {

/// The seconds that a time code's date and time make, whatever the time zone; nothing where it is none.
std::optional<double> SecondsOf(std::string_view time_code);
/// The same of a clock's time.
double SecondsOf(const LocalTime& now);

/// A time code as people read it: "2005-03-17 09:05:44". `time_code` is one.
std::string DateAndTime(const std::string& time_code);

}  // namespace orbelcast
