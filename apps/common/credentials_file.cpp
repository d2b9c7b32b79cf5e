#include "common/credentials_file.h"

#include <sys/stat.h>

#include <string_view>

#include "adapters/posix/key_value_lines.h"
#include "common/standard_stream.h"
#include "toolkit/ascii.h"

namespace orbelcast {

namespace {

/// Two lines and some comments; whatever is larger is another file by mistake.
constexpr std::size_t kMaxCredentialsBytes = 64 * 1024;

std::string_view Unquoted(std::string_view text) {
  const bool quoted = text.size() >= 2 && text.front() == '"' && text.back() == '"';
  return quoted ? text.substr(1, text.size() - 2) : text;
}

}  // namespace

Credentials ReadCredentials(const std::filesystem::path& file) {
  const FileContent content = ReadInput(file, kMaxCredentialsBytes);
  if (!content.problem.empty()) throw CredentialsError("cannot read " + file.string() + ": " + content.problem);

  Credentials credentials;
  credentials.readable_by_others = S_ISREG(content.mode) && (content.mode & (S_IRGRP | S_IROTH)) != 0;
  for (const KeyValueLine& line : KeyValueLines(content.text)) {
    const std::string where = file.string() + ", line " + std::to_string(line.number) + ": ";
    if (!line.value || (line.key != "user" && line.key != "password")) {
      throw CredentialsError(where + "expected a line 'user = NAME' or 'password = TEXT'");
    }
    const std::string_view value = Unquoted(*line.value);
    if (HasControlCharacter(value)) throw CredentialsError(where + "the value holds a control character");
    (line.key == "user" ? credentials.user : credentials.password) = value;
  }
  return credentials;
}

}  // namespace orbelcast
