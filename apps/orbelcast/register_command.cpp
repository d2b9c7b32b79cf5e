#include <dlfcn.h>
#include <link.h>

#include <filesystem>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "adapters/posix/file_registry.h"
#include "adapters/posix/own_folder.h"
#include "common/command_line.h"
#include "orbelcast/commands.h"
#include "orbelcast/orbelcast.h"

namespace orbelcast {

namespace {

namespace fs = std::filesystem;

constexpr const char* kLibrary = "liborbelcast.so";

struct CloseLibrary {
  void operator()(void* library) const { ::dlclose(library); }
};

enum class Registration { kWrite, kRemove };

/// Opens the first library that is there: beside this program, in the folder lib beside this program's, or where the
/// system looks for libraries.
std::unique_ptr<void, CloseLibrary> OpenLibrary() {
  std::vector<std::string> places;
  const fs::path here = OwnFolder();
  std::error_code error;
  for (const fs::path& place : {here / kLibrary, here.parent_path() / "lib" / kLibrary}) {
    if (!here.empty() && fs::exists(place, error)) places.push_back(place.string());
  }
  places.emplace_back(kLibrary);
  return std::unique_ptr<void, CloseLibrary>(::dlopen(places.front().c_str(), RTLD_NOW | RTLD_LOCAL));
}

/// The file that the dynamic linker loaded it from.
std::string PathOf(void* library) {
  link_map* map = nullptr;
  return ::dlinfo(library, RTLD_DI_LINKMAP, &map) == 0 ? map->l_name : kLibrary;
}

/// Writes the controls' classes into the registry file, or removes them, by the library's entry points.
ExitStatus Register(Registration registration) {
  const bool write = registration == Registration::kWrite;
  const auto library = OpenLibrary();
  if (!library) {
    std::cerr << "orbelcast: cannot open the controls' library: " << ::dlerror() << '\n';
    return kNotDone;
  }
  const std::string path = PathOf(library.get());
  void* const entry = ::dlsym(library.get(), write ? "DllRegisterServer" : "DllUnregisterServer");
  if (entry == nullptr) {
    std::cerr << "orbelcast: " << path << " is not the controls' library\n";
    return kNotDone;
  }
  const std::string registry = FileRegistry().Path();
  if (!server::Succeeded(reinterpret_cast<server::RegisterServerFunction*>(entry)())) {
    std::cerr << "orbelcast: cannot write the registry file " << registry << '\n';
    return kNotDone;
  }
  std::cout << (write ? "registered " : "unregistered ") << path << (write ? " in " : " from ") << registry << '\n';
  return kWorked;
}

CommandRun Build(CommandLine& command, Registration registration) {
  command.Footer(
      "The registry file is the one that ORBELCAST_REGISTRY names, else the user's own; the\n"
      "library is liborbelcast.so beside this program, in ../lib, or where the system finds it.\n\n"
      "Exit status: 0 it was done; 1 the file cannot be written, or there is no library; 2\n"
      "wrong usage.");
  return [registration] { return Register(registration); };
}

}  // namespace

CommandRun BuildRegister(CommandLine& command) {
  return Build(command, Registration::kWrite);
}

CommandRun BuildUnregister(CommandLine& command) {
  return Build(command, Registration::kRemove);
}

}  // namespace orbelcast
