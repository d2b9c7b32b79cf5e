#include "adapters/ffmpeg/clip_file.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <limits>
#include <utility>

namespace orbelcast {

namespace {

/// Room is reserved in steps, so that the disk is not asked for each frame.
constexpr std::int64_t kReserveStep = 4 << 20;

/// How large a file of this process may get. Writing beyond it would not fail but end the process with a signal.
std::int64_t LargestFile() {
  rlimit limit{};
  constexpr auto kUnlimited = std::numeric_limits<std::int64_t>::max();
  if (::getrlimit(RLIMIT_FSIZE, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY) return kUnlimited;
  return static_cast<std::int64_t>(std::min<std::uint64_t>(limit.rlim_cur, kUnlimited));
}

bool CannotReserve(int error) {
  return error == EOPNOTSUPP || error == ENOSYS || error == EINVAL;
}

}  // namespace

ClipFile::ClipFile(std::string path) : path_(std::move(path)) {
  // A pipe or a terminal is not waited for, but refused; so is a link, which others may have put there meanwhile.
  descriptor_ = ::open(path_.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK, 0666);
  struct stat status {};
  if (IsOpen() && (::fstat(descriptor_, &status) != 0 || !S_ISREG(status.st_mode))) {
    ::close(descriptor_);
    descriptor_ = -1;
  }
}

ClipFile::~ClipFile() {
  if (!IsOpen()) return;
  if (size_ == 0 && IsStillAtItsPath()) {
    ::unlink(path_.c_str());
  } else if (reserved_ > size_) {
    CutOff(size_);
  }
  ::close(descriptor_);
}

bool ClipFile::Reserve(std::int64_t size) {
  const std::int64_t largest = LargestFile();
  if (size > largest) return false;
  if (size <= reserved_) return true;
  // A disk without space for the next whole step may still have enough for this write.
  for (const std::int64_t end : {std::min(size + kReserveStep, largest), size}) {
    if (::fallocate(descriptor_, FALLOC_FL_KEEP_SIZE, reserved_, end - reserved_) == 0) {
      reserved_ = end;
      return true;
    }
    if (CannotReserve(errno)) break;
    if (end == size) return false;
  }
  // A file system that reserves nothing can at least be asked.
  struct statvfs disk {};
  if (::fstatvfs(descriptor_, &disk) != 0) return true;
  return static_cast<std::uint64_t>(size - size_) <= std::uint64_t{disk.f_bavail} * disk.f_frsize;
}

bool ClipFile::Write(std::span<const std::uint8_t> bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::pwrite(descriptor_, bytes.data(), bytes.size(), place_);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    place_ += written;
    size_ = std::max(size_, place_);
    bytes = bytes.subspan(static_cast<std::size_t>(written));
  }
  return true;
}

void ClipFile::CutOff(std::int64_t size) {
  if (::ftruncate(descriptor_, size) == 0) {
    size_ = size;
    reserved_ = std::min(reserved_, size);
  }
}

bool ClipFile::IsStillAtItsPath() const {
  struct stat own {};
  struct stat there {};
  return ::fstat(descriptor_, &own) == 0 && ::stat(path_.c_str(), &there) == 0 && own.st_dev == there.st_dev &&
         own.st_ino == there.st_ino;
}

}  // namespace orbelcast
