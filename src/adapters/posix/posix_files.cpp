#include "adapters/posix/posix_files.h"

#include <cstdlib>

namespace orbelcast {

std::string PosixFiles::TemporaryDirectory() const {
  std::string directory = "/tmp";
  for (const char* name : {"temp", "TMPDIR"}) {
    const char* value = std::getenv(name);
    if (value == nullptr || *value == '\0') continue;
    directory = value;
    break;
  }
  if (directory.back() != '/') directory += '/';
  return directory;
}

}  // namespace orbelcast
