#pragma once

#include <string>

namespace orbelcast {

/// The file system, as far as the controls know of it.
class Files {
 public:
  virtual ~Files() = default;
  /// The temporary directory, with the system's separator at its end.
  virtual std::string TemporaryDirectory() const = 0;
  /// The controls' own folder, with the system's separator at its end; made where it is missing, for this user alone.
  virtual std::string ModuleFolder() const = 0;
};

}  // namespace orbelcast
