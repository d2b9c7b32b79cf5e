#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/clock.h"

namespace orbelcast {

/// A file's name at this moment: `pattern` with the conversions of strftime(3), "%H%M%S", by the local time.
std::string NameOfNow(const std::string& pattern);

/// "2026-11-24 13:00" or "2026-11-24 13:00:30", a "T" in place of the blank or not; nothing where it is anything else,
/// or no such day or time.
std::optional<LocalTime> ReadTime(std::string_view text);

}  // namespace orbelcast
