#include "adapters/ffmpeg/pipe_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace orbelcast {

PipeFile::PipeFile(int descriptor) : ClipFile(::fcntl(descriptor, F_DUPFD_CLOEXEC, 0)) {}

bool PipeFile::Write(std::span<const std::uint8_t> bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(Descriptor(), bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes = bytes.subspan(static_cast<std::size_t>(written));
  }
  return true;
}

}  // namespace orbelcast
