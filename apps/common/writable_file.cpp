#include "writable_file.h"

#include <unistd.h>

namespace orbelcast {

namespace fs = std::filesystem;

std::string WhyUnwritable(const fs::path& file) {
  std::error_code error;
  fs::path folder = file.parent_path();
  if (folder.empty()) folder = ".";
  if (file.empty()) return "the name is empty";
  if (!fs::is_directory(folder, error)) return "there is no folder " + folder.string();
  if (fs::is_directory(file, error)) return "it is a folder";
  if (::access(folder.c_str(), W_OK) != 0) return "the folder " + folder.string() + " may not be written to";
  return {};
}

}  // namespace orbelcast
