#include "adapters/posix/posix_files.h"

#include <sys/stat.h>

#include <filesystem>
#include <initializer_list>
#include <optional>
#include <system_error>

#include "adapters/posix/configuration_file.h"

namespace orbelcast {

namespace {

constexpr mode_t kForThisUserAlone = 0700;

std::string WithSeparator(std::string directory) {
  if (directory.back() != '/') directory += '/';
  return directory;
}

std::string UserDataFolder() {
  if (auto folder = ProcessEnvironment("XDG_DATA_HOME"); folder && folder->front() == '/')
    return WithSeparator(*folder);
  return WithSeparator(ProcessEnvironment("HOME").value_or("/")) + ".local/share/";
}

}  // namespace

std::string PosixFiles::TemporaryDirectory() const {
  for (const char* name : {"temp", "TMPDIR"}) {
    if (auto directory = ProcessEnvironment(name)) return WithSeparator(*directory);
  }
  return "/tmp/";
}

std::string PosixFiles::ModuleFolder() const {
  std::string folder =
      WithSeparator(ProcessEnvironment("ORBELCAST_MODULE_FOLDER").value_or(UserDataFolder() + "orbelcast"));
  std::error_code ignored;
  std::filesystem::create_directories(std::filesystem::path(folder).parent_path().parent_path(), ignored);
  ::mkdir(folder.c_str(), kForThisUserAlone);
  return folder;
}

}  // namespace orbelcast
