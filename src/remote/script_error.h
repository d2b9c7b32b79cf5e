#pragma once

#include <stdexcept>

namespace orbelcast {

/// A command that is wrong; the text tells the person what is.
struct ScriptError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

}  // namespace orbelcast
