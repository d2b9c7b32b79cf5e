#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace orbelcast {

/// The file system, as far as the controls know of it.
///
/// The files that people and hosts name are the machine's here; a platform whose people are elsewhere overrides all
/// four members for them together.
class Files {
 public:
  virtual ~Files() = default;
  /// The temporary directory, with the system's separator at its end.
  virtual std::string TemporaryDirectory() const = 0;
  /// The controls' own folder, with the system's separator at its end; made where it is missing, for this user alone.
  virtual std::string ModuleFolder() const = 0;

  /// Makes `path` a file of exactly these bytes. Where that cannot be done no file is left and the answer is false; a
  /// pipe is refused.
  virtual bool Write(const std::string& path, std::span<const std::uint8_t> bytes);
  /// Deletes a file; a folder or a device of that name stays, and no error where there is none.
  virtual void Delete(const std::string& path);
  /// The length of a file; nothing where it cannot be told.
  virtual std::optional<std::uintmax_t> LengthOf(const std::string& path) const;
  /// Moves a file to a name that nothing has; false, and the file stays, where something has it or it cannot be.
  virtual bool Move(const std::string& from, const std::string& to);
};

}  // namespace orbelcast
