#pragma once

#include <string>
#include <vector>

#include "common/exit_status.h"

namespace orbelcast {

/// Puts the player program in this program's place, with `arguments`. It is looked for beside this program, then on
/// PATH. Returns only when there is none, having said so on standard error.
ExitStatus Play(const std::vector<std::string>& arguments);

}  // namespace orbelcast
