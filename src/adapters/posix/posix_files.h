#pragma once

#include <string>

#include "platform/files.h"

namespace orbelcast {

/// The file system of a POSIX machine.
class PosixFiles final : public Files {
 public:
  PosixFiles() = default;
  /// Removes the module folder that it made.
  ~PosixFiles() override;
  PosixFiles(const PosixFiles&) = delete;
  PosixFiles& operator=(const PosixFiles&) = delete;

  /// The environment variable "temp", else "TMPDIR", else "/tmp"; with a slash at its end.
  std::string TemporaryDirectory() const override;
  /// The folder that the environment variable "ORBELCAST_MODULE_FOLDER" names, where it is this user's and can be
  /// written to: another user's file there must not be taken for a picture. Otherwise a new folder below the
  /// temporary directory, so that no two programs mix up their pictures; it is made when it is first asked for. Where
  /// that fails, writing to it fails.
  std::string ModuleFolder() const override;

 private:
  mutable std::string own_folder_;
};

}  // namespace orbelcast
