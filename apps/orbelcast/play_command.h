#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "orbelcast/exit_status.h"

namespace orbelcast {

/// Puts the player program in this program's place, with `arguments`. It is looked for beside this program, then on
/// PATH. Returns only when there is none, having said so on `messages`.
ExitStatus Play(const std::vector<std::string>& arguments, std::ostream& messages);

}  // namespace orbelcast
