#include "adapters/posix/posix_files.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <initializer_list>
#include <optional>
#include <string>
#include <system_error>

#include "adapters/posix/configuration_file.h"

namespace orbelcast {

namespace {

constexpr mode_t kForThisUserAlone = 0700;
/// A folder that no user can write to.
constexpr const char* kNowhere = "/dev/null/";

std::string WithSeparator(std::string directory) {
  if (directory.back() != '/') directory += '/';
  return directory;
}

/// Whether the folder is this user's, and takes files; makes it where it is missing.
bool MakeFolder(const std::string& folder) {
  std::error_code ignored;
  std::filesystem::create_directories(std::filesystem::path(folder).parent_path().parent_path(), ignored);
  ::mkdir(folder.c_str(), kForThisUserAlone);
  struct stat about {};
  return ::stat(folder.c_str(), &about) == 0 && S_ISDIR(about.st_mode) && about.st_uid == ::geteuid() &&
         ::access(folder.c_str(), W_OK | X_OK) == 0;
}

}  // namespace

std::string PosixFiles::TemporaryDirectory() const {
  for (const char* name : {"temp", "TMPDIR"}) {
    if (auto directory = ProcessEnvironment(name)) return WithSeparator(*directory);
  }
  return "/tmp/";
}

std::string PosixFiles::ModuleFolder() const {
  if (const auto named = ProcessEnvironment("ORBELCAST_MODULE_FOLDER")) {
    std::string folder = WithSeparator(*named);
    if (MakeFolder(folder)) return folder;
  }
  if (own_folder_.empty()) {
    std::string folder = TemporaryDirectory() + "orbelcast-XXXXXX";
    if (::mkdtemp(folder.data()) == nullptr) return kNowhere;
    own_folder_ = WithSeparator(folder);
  }
  return own_folder_;
}

PosixFiles::~PosixFiles() {
  std::error_code ignored;
  if (!own_folder_.empty()) std::filesystem::remove_all(own_folder_, ignored);
}

}  // namespace orbelcast
