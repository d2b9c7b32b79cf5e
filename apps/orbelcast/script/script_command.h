#pragma once

#include <iosfwd>
#include <string>

#include "common/exit_status.h"

namespace orbelcast {

/// Carries out the script in `file`, or the one on `input` where no file is named. The controls' events and
/// answers go to `output`, an error in reading the file to `messages`.
ExitStatus RunScript(const std::string& file, std::istream& input, std::ostream& output, std::ostream& messages);

}  // namespace orbelcast
