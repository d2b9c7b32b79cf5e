#include "adapters/clip_library/clip_library.h"

#include <dlfcn.h>
#include <link.h>

#include <filesystem>
#include <iostream>

namespace orbelcast {

namespace {

constexpr const char* kName = "liborbelcast-clips.so";
constexpr const char* kFolder = "orbelcast";
constexpr const char* kEntryPoint = "OrbelcastAviFiles";

/// The folder of the program or shared library that holds this code; empty where the system does not say.
std::filesystem::path OwnFolder() {
  Dl_info unused{};
  link_map* map = nullptr;
  if (dladdr1(kFolder, &unused, reinterpret_cast<void**>(&map), RTLD_DL_LINKMAP) == 0 || map == nullptr) return {};
  std::error_code error;
  // The program itself has no name there.
  const bool is_program = map->l_name == nullptr || *map->l_name == '\0';
  const auto file = std::filesystem::canonical(is_program ? "/proc/self/exe" : map->l_name, error);
  return file.parent_path();
}

std::filesystem::path FindLibrary() {
  const std::filesystem::path own = OwnFolder();
  for (const auto& folder : {own, own / ".." / ORBELCAST_LIBRARY_FOLDER, own / ".." / "lib"}) {
    auto file = folder / kFolder / kName;
    std::error_code error;
    if (std::filesystem::exists(file, error)) return file;
  }
  return {};
}

/// The library's clips, or those of the service that can make none.
AviFiles& Load() {
  static AviFiles none;
  const auto file = FindLibrary();
  if (file.empty()) {
    std::cerr << "orbelcast: no clips can be recorded: " << kName << " is not installed beside this program\n";
    return none;
  }
  void* const library = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
  void* const entry_point = library != nullptr ? dlsym(library, kEntryPoint) : nullptr;
  if (entry_point == nullptr) {
    std::cerr << "orbelcast: no clips can be recorded: " << dlerror() << '\n';
    return none;
  }
  return *reinterpret_cast<AviFiles* (*)()>(entry_point)();
}

AviFiles& Loaded() {
  static AviFiles& files = Load();
  return files;
}

}  // namespace

std::vector<std::string> ClipLibrary::Codecs() const {
  return Loaded().Codecs();
}

std::unique_ptr<AviFile> ClipLibrary::Create(const std::string& path) {
  return Loaded().Create(path);
}

}  // namespace orbelcast
