#include "common/credentials_file.h"

#include <sys/stat.h>

#include <string_view>

#include "adapters/posix/key_value_lines.h"
#include "common/standard_stream.h"
#include "toolkit/ascii.h"

namespace orbelcast {

namespace {

/// A line or two for each login, a chain of certificates; whatever is larger is another file by mistake.
constexpr std::size_t kMaxCredentialsBytes = 64 * 1024;
constexpr const char* kUser = "user";

std::string_view Unquoted(std::string_view text) {
  const bool quoted = text.size() >= 2 && text.front() == '"' && text.back() == '"';
  return quoted ? text.substr(1, text.size() - 2) : text;
}

SecretLines ReadLoginLines(const std::filesystem::path& file) {
  const std::string expected = "expected a line 'user = NAME' or 'password = TEXT'";
  SecretLines read = ReadSecretLines(file, expected);
  for (const SecretLine& line : read.lines) {
    if (line.key != kUser && line.key != "password") throw CredentialsError(line.where + expected);
  }
  return read;
}

}  // namespace

SecretText ReadSecretText(const std::filesystem::path& file) {
  FileContent content = ReadInput(file, kMaxCredentialsBytes);
  if (!content.problem.empty()) throw CredentialsError("cannot read " + file.string() + ": " + content.problem);
  return {.text = std::move(content.text),
          .readable_by_others = S_ISREG(content.mode) && (content.mode & (S_IRGRP | S_IROTH)) != 0};
}

SecretLines ReadSecretLines(const std::filesystem::path& file, const std::string& expected) {
  const SecretText content = ReadSecretText(file);
  SecretLines read{.lines = {}, .readable_by_others = content.readable_by_others};
  for (const KeyValueLine& line : KeyValueLines(content.text)) {
    std::string where = file.string() + ", line " + std::to_string(line.number) + ": ";
    if (!line.value) throw CredentialsError(where + expected);
    const std::string_view value = Unquoted(*line.value);
    if (HasControlCharacter(value)) throw CredentialsError(where + "the value holds a control character");
    read.lines.push_back({std::move(where), std::string(line.key), std::string(value)});
  }
  return read;
}

Credentials ReadCredentials(const std::filesystem::path& file) {
  const SecretLines read = ReadLoginLines(file);
  Credentials credentials;
  credentials.readable_by_others = read.readable_by_others;
  for (const SecretLine& line : read.lines) (line.key == kUser ? credentials.user : credentials.password) = line.value;
  return credentials;
}

Logins ReadLogins(const std::filesystem::path& file) {
  const SecretLines read = ReadLoginLines(file);
  Logins logins{.logins = {}, .readable_by_others = read.readable_by_others};
  for (std::size_t i = 0; i < read.lines.size(); i += 2) {
    const SecretLine& first = read.lines[i];
    if (i + 1 == read.lines.size() || read.lines[i + 1].key == first.key) {
      throw CredentialsError(first.where + "each user is to have a password, in the line after or before");
    }
    const bool user_first = first.key == kUser;
    const SecretLine& second = read.lines[i + 1];
    logins.logins.emplace_back((user_first ? first : second).value, (user_first ? second : first).value);
    if (logins.logins.back().first.find(':') != std::string::npos) {
      throw CredentialsError(first.where + "a user's name has no colon");
    }
  }
  if (logins.logins.empty()) throw CredentialsError(file.string() + " has no line 'user = NAME'");
  return logins;
}

}  // namespace orbelcast
