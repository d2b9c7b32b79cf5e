#include "common/access.h"

#include <cstdlib>
#include <iostream>
#include <memory>

#include "common/command_line.h"
#include "common/credentials_file.h"
#include "common/environment.h"
#include "common/shown_text.h"
#include "protocol/server_address.h"

namespace orbelcast {

namespace {

constexpr const char* kUserVariable = "ORBELCAST_USER";
constexpr const char* kPasswordVariable = "ORBELCAST_PASSWORD";

struct LoginOptions {
  Option user;
  Option password;
};

void TakeFile(const CommandLine& command, const std::string& file, const LoginOptions& given, Access& access) {
  Credentials credentials;
  try {
    credentials = ReadCredentials(file);
  } catch (const CredentialsError& error) {
    throw UsageError("--credentials", error.what());
  }
  if (!given.user.IsGiven() && !credentials.user) {
    throw UsageError("--credentials", file + " names no user; add a line such as 'user = ann', or give --user");
  }
  if (credentials.readable_by_others) WarnOfReaders(command, file);
  if (!given.user.IsGiven()) access.user = *credentials.user;
  if (!given.password.IsGiven()) access.password = credentials.password.value_or("");
}

void TakeEnvironment(const LoginOptions& given, Access& access) {
  if (!given.user.IsGiven()) access.user = EnvironmentText(kUserVariable);
  if (!given.password.IsGiven()) access.password = EnvironmentText(kPasswordVariable);
}

}  // namespace

void WarnOfReaders(const CommandLine& command, const std::string& file) {
  std::cerr << command.Program() << ": warning: other users of this machine may read " << file
            << "; keep it to yourself:  chmod 600 " << file << '\n';
}

std::string TileAddress(const std::string& live_address, const Access& access) {
  const bool has_login = live_address.find(':', live_address.rfind('/')) != std::string::npos;
  if (has_login || access.user.empty()) return live_address;
  return LiveAddress(live_address, access.user, access.password);
}

void PassOn(const Access& access) {
  ::setenv(kUserVariable, access.user.c_str(), 1);
  ::setenv(kPasswordVariable, access.password.c_str(), 1);
}

void AddAccessOptions(CommandLine& command, Access& access, const std::string& user_description) {
  const std::string group = "Access";
  const Option user = command.AddText("--user", access.user, user_description + ". Also: " + kUserVariable)
                          .ValueName("NAME")
                          .Group(group);
  const Option password = command
                              .AddText("--password", access.password,
                                       "Password. Other users of the machine can read a command line; they cannot read "
                                       "--credentials, or " +
                                           std::string(kPasswordVariable))
                              .ValueName("TEXT")
                              .Group(group);
  const auto file_name = std::make_shared<std::string>();
  const Option file = command
                          .AddText("--credentials", *file_name,
                                   "Take both from FILE, which has the lines 'user = NAME' and 'password = TEXT'")
                          .ValueName("FILE")
                          .Group(group);
  command.OnRead([&command, &access, given = LoginOptions{user, password}, file, file_name] {
    if (file.IsGiven()) {
      TakeFile(command, *file_name, given, access);
    } else {
      TakeEnvironment(given, access);
    }
    KeepSecret(access.password);
  });
}

}  // namespace orbelcast
