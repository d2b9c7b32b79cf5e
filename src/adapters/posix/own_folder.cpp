#include "adapters/posix/own_folder.h"

#include <dlfcn.h>
#include <link.h>

namespace orbelcast {

std::filesystem::path OwnFile() {
  static constexpr char kWithin = 0;
  Dl_info unused{};
  link_map* map = nullptr;
  if (::dladdr1(&kWithin, &unused, reinterpret_cast<void**>(&map), RTLD_DL_LINKMAP) == 0 || map == nullptr) return {};
  // The program itself has no name there.
  const bool is_program = map->l_name == nullptr || *map->l_name == '\0';
  std::error_code error;
  return std::filesystem::canonical(is_program ? "/proc/self/exe" : map->l_name, error);
}

std::filesystem::path OwnFolder() {
  return OwnFile().parent_path();
}

}  // namespace orbelcast
