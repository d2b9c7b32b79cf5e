#include "credentials_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <string_view>

#include "platform/ascii.h"

namespace orbelcast {

namespace {

/// Two lines and some comments; whatever is larger is another file by mistake.
constexpr std::size_t kMaxCredentialsBytes = 64 * 1024;

class Descriptor {
 public:
  explicit Descriptor(const std::filesystem::path& file) : number_(::open(file.c_str(), O_RDONLY | O_CLOEXEC)) {}
  ~Descriptor() {
    if (number_ >= 0) ::close(number_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int Number() const { return number_; }

 private:
  int number_;
};

[[noreturn]] void CannotRead(const std::filesystem::path& file, int error) {
  throw CredentialsError("cannot read " + file.string() + ": " + std::strerror(error));
}

std::string ReadAll(const std::filesystem::path& file, const Descriptor& descriptor) {
  std::string text;
  std::array<char, 4096> piece{};
  for (;;) {
    const ssize_t count = ::read(descriptor.Number(), piece.data(), piece.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) CannotRead(file, errno);
    if (count == 0) return text;
    text.append(piece.data(), static_cast<std::size_t>(count));
    if (text.size() > kMaxCredentialsBytes) throw CredentialsError(file.string() + " is too large to hold credentials");
  }
}

std::string_view Unquoted(std::string_view text) {
  const bool quoted = text.size() >= 2 && text.front() == '"' && text.back() == '"';
  return quoted ? text.substr(1, text.size() - 2) : text;
}

}  // namespace

Credentials ReadCredentials(const std::filesystem::path& file) {
  const Descriptor descriptor(file);
  struct stat about {};
  if (descriptor.Number() < 0 || ::fstat(descriptor.Number(), &about) != 0) CannotRead(file, errno);
  const std::string text = ReadAll(file, descriptor);

  Credentials credentials;
  credentials.readable_by_others = S_ISREG(about.st_mode) && (about.st_mode & (S_IRGRP | S_IROTH)) != 0;
  std::string_view rest = text;
  for (int number = 1; !rest.empty(); ++number) {
    const std::size_t end = std::min(rest.find('\n'), rest.size());
    const std::string_view line = Trimmed(rest.substr(0, end), " \t\r");
    rest.remove_prefix(std::min(end + 1, rest.size()));
    if (line.empty() || line.starts_with('#')) continue;

    const std::string where = file.string() + ", line " + std::to_string(number) + ": ";
    const std::size_t equals = std::min(line.find('='), line.size());
    const std::string_view key = Trimmed(line.substr(0, equals));
    if (equals == line.size() || (key != "user" && key != "password")) {
      throw CredentialsError(where + "expected a line 'user = NAME' or 'password = TEXT'");
    }
    const std::string_view value = Unquoted(Trimmed(line.substr(equals + 1)));
    if (HasControlCharacter(value)) throw CredentialsError(where + "the value holds a control character");
    (key == "user" ? credentials.user : credentials.password) = value;
  }
  return credentials;
}

}  // namespace orbelcast
