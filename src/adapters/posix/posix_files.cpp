#include "adapters/posix/posix_files.h"

#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <initializer_list>
#include <optional>
#include <system_error>

namespace orbelcast {

namespace {

constexpr mode_t kForThisUserAlone = 0700;

std::optional<std::string> Environment(const char* name) {
  const char* value = std::getenv(name);
  if (value == nullptr || *value == '\0') return std::nullopt;
  return value;
}

std::string WithSeparator(std::string directory) {
  if (directory.back() != '/') directory += '/';
  return directory;
}

std::string UserDataFolder() {
  if (auto folder = Environment("XDG_DATA_HOME"); folder && folder->front() == '/') return WithSeparator(*folder);
  return WithSeparator(Environment("HOME").value_or("/")) + ".local/share/";
}

}  // namespace

std::string PosixFiles::TemporaryDirectory() const {
  for (const char* name : {"temp", "TMPDIR"}) {
    if (auto directory = Environment(name)) return WithSeparator(*directory);
  }
  return "/tmp/";
}

std::string PosixFiles::ModuleFolder() const {
  std::string folder = WithSeparator(Environment("ORBELCAST_MODULE_FOLDER").value_or(UserDataFolder() + "orbelcast"));
  std::error_code ignored;
  std::filesystem::create_directories(std::filesystem::path(folder).parent_path().parent_path(), ignored);
  ::mkdir(folder.c_str(), kForThisUserAlone);
  return folder;
}

}  // namespace orbelcast
