#pragma once

#include <string>

#include "platform/files.h"

namespace orbelcast {

/// The file system of a POSIX machine.
class PosixFiles final : public Files {
 public:
  /// The environment variable "temp", else "TMPDIR", else "/tmp"; with a slash at its end.
  std::string TemporaryDirectory() const override;
  /// The environment variable "ORBELCAST_MODULE_FOLDER", else "orbelcast" in the user's data folder. Where it cannot be
  /// made, what is written there fails.
  std::string ModuleFolder() const override;
};

}  // namespace orbelcast
