#include "orbelcast/register_command.h"

#include <dlfcn.h>
#include <link.h>

#include <filesystem>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "adapters/posix/file_registry.h"
#include "orbelcast/orbelcast.h"

namespace orbelcast {

namespace {

namespace fs = std::filesystem;

constexpr const char* kLibrary = "liborbelcast.so";

struct CloseLibrary {
  void operator()(void* library) const { ::dlclose(library); }
};

/// Opens the first library that is there.
std::unique_ptr<void, CloseLibrary> OpenLibrary() {
  std::error_code error;
  const fs::path here = fs::read_symlink("/proc/self/exe", error).parent_path();
  std::vector<std::string> places;
  for (const fs::path& place : {here / kLibrary, here.parent_path() / "lib" / kLibrary}) {
    if (!error && fs::exists(place, error)) places.push_back(place.string());
  }
  places.emplace_back(kLibrary);
  return std::unique_ptr<void, CloseLibrary>(::dlopen(places.front().c_str(), RTLD_NOW | RTLD_LOCAL));
}

/// Where the system has found it.
std::string PathOf(void* library) {
  link_map* map = nullptr;
  return ::dlinfo(library, RTLD_DI_LINKMAP, &map) == 0 ? map->l_name : kLibrary;
}

}  // namespace

ExitStatus Register(Registration registration, std::ostream& output, std::ostream& messages) {
  const bool write = registration == Registration::kWrite;
  const auto library = OpenLibrary();
  if (!library) {
    messages << "orbelcast: cannot open the controls' library: " << ::dlerror() << '\n';
    return kNotDone;
  }
  const std::string path = PathOf(library.get());
  void* const entry = ::dlsym(library.get(), write ? "DllRegisterServer" : "DllUnregisterServer");
  if (entry == nullptr) {
    messages << "orbelcast: " << path << " is not the controls' library\n";
    return kNotDone;
  }
  const std::string registry = FileRegistry().Path();
  if (!server::Succeeded(reinterpret_cast<server::RegisterServerFunction*>(entry)())) {
    messages << "orbelcast: cannot write the registry file " << registry << '\n';
    return kNotDone;
  }
  output << (write ? "registered " : "unregistered ") << path << (write ? " in " : " from ") << registry << '\n';
  return kWorked;
}

}  // namespace orbelcast
