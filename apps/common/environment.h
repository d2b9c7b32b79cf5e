#pragma once

#include <cstdlib>
#include <string>

namespace orbelcast {

/// An environment variable's text; empty where it is not set.
inline std::string EnvironmentText(const char* variable) {
  const char* const text = std::getenv(variable);
  return text == nullptr ? std::string() : text;
}

}  // namespace orbelcast
