#include "adapters/posix/named_file.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <random>
#include <string_view>
#include <system_error>

#include "adapters/posix/descriptor.h"

namespace orbelcast {

namespace {

namespace fs = std::filesystem;

/// As many as the system follows.
constexpr int kMostLinks = 40;
constexpr std::size_t kSuffixLetters = 12;
/// Of the file's own name, in that of the one beside: the system takes 255 bytes in all.
constexpr std::size_t kMostNameBytes = 200;
constexpr mode_t kPermissions = 0777;

std::string Reason(int error) {
  return std::generic_category().message(error);
}

/// The kind of a name's object that is no regular file, for people.
std::string Kind(mode_t mode) {
  if (S_ISDIR(mode)) return "it is a folder";
  if (S_ISFIFO(mode)) return "it is a pipe";
  return "it is no file";
}

bool WriteAll(int descriptor, std::span<const std::uint8_t> bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes = bytes.subspan(static_cast<std::size_t>(written));
  }
  return true;
}

/// Reads and writes of a descriptor that was opened without waiting wait from here on.
bool MakeBlocking(int descriptor) {
  const int flags = ::fcntl(descriptor, F_GETFL);
  return flags >= 0 && ::fcntl(descriptor, F_SETFL, flags & ~O_NONBLOCK) == 0;
}

/// Whether a file of the process may get as large. Writing beyond it would end the process with a signal.
bool IsWithinLimit(std::size_t bytes) {
  rlimit limit{};
  return ::getrlimit(RLIMIT_FSIZE, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY || bytes <= limit.rlim_cur;
}

std::string WriteInPlace(const fs::path& name, std::span<const std::uint8_t> bytes) {
  const Descriptor file(::open(name.c_str(), O_WRONLY | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
  struct stat about {};
  if (!file.IsOpen()) return errno == ENXIO ? "nobody reads from it" : Reason(errno);
  if (::fstat(file.Number(), &about) != 0 || S_ISREG(about.st_mode)) return "it has changed meanwhile";
  return MakeBlocking(file.Number()) && WriteAll(file.Number(), bytes) ? std::string() : Reason(errno);
}

/// Gives the open file the permissions and, where this user may, the owner of the one that it takes the place of.
void TakeAttributes(int descriptor, const struct stat& old) {
  // An owner that cannot be kept is no error: a user who may write to the folder may put files of his own there.
  if (::fchown(descriptor, old.st_uid, old.st_gid) != 0 &&
      ::fchown(descriptor, static_cast<uid_t>(-1), old.st_gid) != 0)
    errno = 0;
  ::fchmod(descriptor, old.st_mode & kPermissions);
}

void SyncFolder(const fs::path& file) {
  const fs::path folder = file.has_parent_path() ? file.parent_path() : fs::path(".");
  const Descriptor opened(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (opened.IsOpen()) ::fsync(opened.Number());
}

std::string WriteBeside(const fs::path& beside, const struct stat* old, std::span<const std::uint8_t> bytes,
                        mode_t mode) {
  const Descriptor file(::open(beside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                               old != nullptr ? mode_t{S_IRUSR | S_IWUSR} : mode));
  if (!file.IsOpen()) return Reason(errno);
  if (WriteAll(file.Number(), bytes) && ::fsync(file.Number()) == 0) {
    if (old != nullptr) TakeAttributes(file.Number(), *old);
    return {};
  }
  std::string problem = Reason(errno);
  ::unlink(beside.c_str());
  return problem;
}

}  // namespace

FileContent ReadNamedFile(const fs::path& name, std::size_t most_bytes, Pipes pipes) {
  const Descriptor file(::open(name.c_str(), O_RDONLY | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
  struct stat about {};
  if (!file.IsOpen() || ::fstat(file.Number(), &about) != 0) {
    const int error = errno;
    return {.problem = Reason(error), .missing = error == ENOENT || error == ENOTDIR};
  }
  const bool taken = S_ISREG(about.st_mode) || (S_ISFIFO(about.st_mode) && pipes == Pipes::kRead);
  if (!taken || !MakeBlocking(file.Number())) return {.problem = Kind(about.st_mode)};

  FileContent content{.mode = about.st_mode};
  std::array<char, 16 * 1024> piece;
  while (content.text.size() <= most_bytes) {
    const ssize_t count = ::read(file.Number(), piece.data(), piece.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return {.problem = Reason(errno)};
    if (count == 0) return content;
    content.text.append(piece.data(), static_cast<std::size_t>(count));
  }
  return {.problem = "it is too large, over " + std::to_string(most_bytes) + " bytes", .too_large = true};
}

std::string WriteNamedFile(const fs::path& name, std::span<const std::uint8_t> bytes, mode_t mode) {
  if (std::string problem = WhyUnwritable(name); !problem.empty()) return problem;
  struct stat about {};
  const bool exists = ::stat(name.c_str(), &about) == 0;
  if (exists && !S_ISREG(about.st_mode)) return WriteInPlace(name, bytes);
  if (!IsWithinLimit(bytes.size())) return Reason(EFBIG);

  const fs::path file = FollowLinks(name);
  const fs::path beside = NameBeside(file);
  if (std::string problem = WriteBeside(beside, exists ? &about : nullptr, bytes, mode); !problem.empty()) {
    return problem;
  }
  if (::rename(beside.c_str(), file.c_str()) == 0) {
    SyncFolder(file);
    return {};
  }
  std::string problem = Reason(errno);
  ::unlink(beside.c_str());
  return problem;
}

std::string WhyUnwritable(const fs::path& name) {
  if (name.empty()) return "the name is empty";
  struct stat about {};
  const bool exists = ::stat(name.c_str(), &about) == 0;
  if (exists && S_ISDIR(about.st_mode)) return Kind(about.st_mode);
  if (exists && ::access(name.c_str(), W_OK) != 0) return "it may not be written to";
  if (exists && !S_ISREG(about.st_mode)) return {};
  if (!exists && errno == ELOOP) return Reason(ELOOP);
  fs::path folder = FollowLinks(name).parent_path();
  if (folder.empty()) folder = ".";
  std::error_code error;
  if (!fs::is_directory(folder, error)) return "there is no folder " + folder.string();
  if (::access(folder.c_str(), W_OK) != 0) return "the folder " + folder.string() + " may not be written to";
  return {};
}

fs::path FollowLinks(const fs::path& name) {
  fs::path file = name;
  for (int links = 0; links < kMostLinks; ++links) {
    std::error_code error;
    const fs::path target = fs::read_symlink(file, error);
    if (error) break;
    file = target.is_absolute() ? target : file.parent_path() / target;
  }
  return file;
}

fs::path NameBeside(const fs::path& file) {
  constexpr std::string_view kLetters = "abcdefghijklmnopqrstuvwxyz0123456789";
  std::random_device random;
  std::uniform_int_distribution<std::size_t> letter(0, kLetters.size() - 1);
  std::string name = file.filename().string().substr(0, kMostNameBytes) + ".";
  for (std::size_t i = 0; i < kSuffixLetters; ++i) name += kLetters[letter(random)];
  return file.parent_path() / (name + ".part");
}

std::string PutInPlace(const fs::path& beside, const fs::path& file) {
  struct stat old {};
  if (::stat(file.c_str(), &old) == 0) {
    const Descriptor opened(::open(beside.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!opened.IsOpen()) return Reason(errno);
    TakeAttributes(opened.Number(), old);
  }
  if (::rename(beside.c_str(), file.c_str()) != 0) return Reason(errno);
  SyncFolder(file);
  return {};
}

}  // namespace orbelcast
