#include "adapters/clip_library/clip_library.h"

#include <dlfcn.h>

#include <filesystem>
#include <iostream>

namespace orbelcast {

namespace {

constexpr const char* kName = "liborbelcast-clips.so";
constexpr const char* kFolder = "orbelcast";
constexpr const char* kEntryPoint = "OrbelcastAviFiles";

std::filesystem::path FindLibrary(const std::filesystem::path& own_folder) {
  for (const auto& folder : {own_folder, own_folder / ".." / ORBELCAST_LIBRARY_FOLDER, own_folder / ".." / "lib"}) {
    auto file = folder / kFolder / kName;
    std::error_code error;
    if (std::filesystem::exists(file, error)) return file;
  }
  return {};
}

/// The library's clips, or those of the service that can make none.
AviFiles& Load(const std::filesystem::path& own_folder) {
  static AviFiles none;
  const auto file = FindLibrary(own_folder);
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

}  // namespace

AviFiles& ClipLibrary::Loaded() const {
  static AviFiles& files = Load(own_folder_());
  return files;
}

std::vector<std::string> ClipLibrary::Codecs() const {
  return Loaded().Codecs();
}

std::unique_ptr<AviFile> ClipLibrary::Create(const std::string& path) {
  return Loaded().Create(path);
}

std::unique_ptr<JpegClip> ClipLibrary::CreateOfJpegs(const std::string& path, const JpegClip::Header& header) {
  return Loaded().CreateOfJpegs(path, header);
}

}  // namespace orbelcast
