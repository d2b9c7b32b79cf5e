#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

/// Files that hold passwords or keys. A pipe that has a writer is read as a file is; folders, devices and files that
/// are too large are refused.
namespace orbelcast {

/// Such a file that cannot be used. Its message never repeats the file's content.
class CredentialsError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct SecretText {
  std::string text;
  /// Other users of the machine may read the file, too.
  bool readable_by_others = false;
};

/// Throws CredentialsError.
SecretText ReadSecretText(const std::filesystem::path& file);

struct SecretLine {
  std::string where;  ///< "FILE, line 3: "
  std::string key;
  std::string value;
};

struct SecretLines {
  std::vector<SecretLine> lines;
  bool readable_by_others = false;
};

/// Reads a file of lines `NAME = TEXT`; a line of another form is an error that says what is `expected`. Empty lines,
/// and lines that begin with #, are skipped; blanks around a name or a text do not count, and neither do double quotes
/// around all of a text, which has no control character. Throws CredentialsError.
SecretLines ReadSecretLines(const std::filesystem::path& file, const std::string& expected);

/// The contents of a credentials file; each line may be missing.
struct Credentials {
  std::optional<std::string> user;
  std::optional<std::string> password;
  bool readable_by_others = false;
};

/// Reads a file of lines `user = NAME` and `password = TEXT`, of which the last ones count. Throws CredentialsError.
Credentials ReadCredentials(const std::filesystem::path& file);

struct Logins {
  /// A user and a password each; at least one.
  std::vector<std::pair<std::string, std::string>> logins;
  bool readable_by_others = false;
};

/// Reads a credentials file of one login or more, each a line `user = NAME` and a line `password = TEXT` one after the
/// other. A name has no colon. Throws CredentialsError.
Logins ReadLogins(const std::filesystem::path& file);

}  // namespace orbelcast
