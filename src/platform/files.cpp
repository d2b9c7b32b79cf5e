#include "platform/files.h"

#include <filesystem>
#include <fstream>
#include <system_error>

namespace orbelcast {

namespace fs = std::filesystem;

bool Files::Write(const std::string& path, std::span<const std::uint8_t> bytes) {
  std::error_code ignored;
  if (fs::is_fifo(path, ignored)) return false;  // Opening one waits for a reader.
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  if (!file) return false;
  file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  file.close();
  if (file) return true;
  Files::Delete(path);
  return false;
}

void Files::Delete(const std::string& path) {
  std::error_code ignored;
  if (!fs::is_directory(path, ignored) && !fs::is_other(path, ignored)) fs::remove(path, ignored);
}

std::optional<std::uintmax_t> Files::LengthOf(const std::string& path) const {
  std::error_code error;
  const std::uintmax_t length = fs::file_size(path, error);
  return error ? std::nullopt : std::optional(length);
}

bool Files::Move(const std::string& from, const std::string& to) {
  std::error_code error;
  if (fs::exists(fs::symlink_status(to, error))) return false;
  fs::rename(from, to, error);
  if (!error) return true;
  // Another file system.
  if (!fs::copy_file(from, to, error)) {
    std::error_code ignored;
    if (error != std::errc::file_exists) fs::remove(to, ignored);
    return false;
  }
  fs::remove(from, error);
  return true;
}

}  // namespace orbelcast
