#include "common/access.h"

#include <CLI/CLI.hpp>
#include <cstdlib>
#include <iostream>
#include <memory>

#include "common/credentials_file.h"
#include "common/environment.h"
#include "common/shown_text.h"
#include "protocol/server_address.h"

namespace orbelcast {

namespace {

constexpr const char* kUserVariable = "ORBELCAST_USER";
constexpr const char* kPasswordVariable = "ORBELCAST_PASSWORD";

struct AccessOptions {
  CLI::Option* user;
  CLI::Option* password;
  CLI::Option* file;
  std::string file_name;
};

void TakeFile(const CLI::App& command, const AccessOptions& options, Access& access) {
  Credentials credentials;
  try {
    credentials = ReadCredentials(options.file_name);
  } catch (const CredentialsError& error) {
    throw CLI::ValidationError("--credentials", error.what());
  }
  if (options.user->count() == 0 && !credentials.user) {
    throw CLI::ValidationError("--credentials",
                               options.file_name + " names no user; add a line such as 'user = ann', or give --user");
  }
  if (credentials.readable_by_others) WarnOfReaders(command, options.file_name);
  if (options.user->count() == 0) access.user = *credentials.user;
  if (options.password->count() == 0) access.password = credentials.password.value_or("");
}

void TakeEnvironment(const AccessOptions& options, Access& access) {
  if (options.user->count() == 0) access.user = EnvironmentText(kUserVariable);
  if (options.password->count() == 0) access.password = EnvironmentText(kPasswordVariable);
}

}  // namespace

void WarnOfReaders(const CLI::App& command, const std::string& file) {
  const CLI::App* program = &command;
  while (program->get_parent() != nullptr) program = program->get_parent();
  std::cerr << program->get_name() << ": warning: other users of this machine may read " << file
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

void AddAccessOptions(CLI::App& command, Access& access, const std::string& user_description) {
  const std::string group = "Access";
  const auto options = std::make_shared<AccessOptions>();
  options->user = command.add_option("--user", access.user, user_description + ". Also: " + kUserVariable)
                      ->type_name("NAME")
                      ->group(group);
  options->password = command
                          .add_option("--password", access.password,
                                      "Password. Other users of the machine can read a command line; they cannot read "
                                      "--credentials, or " +
                                          std::string(kPasswordVariable))
                          ->type_name("TEXT")
                          ->group(group);
  options->file = command
                      .add_option("--credentials", options->file_name,
                                  "Take both from FILE, which has the lines 'user = NAME' and 'password = TEXT'")
                      ->type_name("FILE")
                      ->group(group);
  command.parse_complete_callback([&command, &access, options] {
    if (options->file->count() > 0) {
      TakeFile(command, *options, access);
    } else {
      TakeEnvironment(*options, access);
    }
    KeepSecret(access.password);
  });
}

}  // namespace orbelcast
