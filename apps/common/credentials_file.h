#pragma once

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>

namespace orbelcast {

/// The contents of a credentials file; each line may be missing.
struct Credentials {
  std::optional<std::string> user;
  std::optional<std::string> password;
  /// Other users of the machine may read the file, too.
  bool readable_by_others = false;
};

/// A credentials file that cannot be used. Its message never repeats the file's content.
class CredentialsError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Reads a file of lines `user = NAME` and `password = TEXT`. Empty lines, and lines that begin with #, are skipped;
/// blanks around a name or a value do not count, and neither do double quotes around all of a value. A pipe that
/// has a writer is read as a file is. Throws CredentialsError.
Credentials ReadCredentials(const std::filesystem::path& file);

}  // namespace orbelcast
