#pragma once

#include <stdexcept>

namespace orbelcast {

/// A wrong command; the text names the error for people.
struct ScriptError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

}  // namespace orbelcast
