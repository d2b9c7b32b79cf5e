#pragma once

#include <iosfwd>

#include "orbelcast/exit_status.h"

namespace orbelcast {

enum class Registration { kWrite, kRemove };

/// Writes the controls' classes into the registry file, or removes them, by the entry points of liborbelcast.so. The
/// library is looked for beside this program, in the folder lib beside this program's, and where the system looks for
/// libraries. What was done goes to `output`, why it could not be to `messages`.
ExitStatus Register(Registration registration, std::ostream& output, std::ostream& messages);

}  // namespace orbelcast
