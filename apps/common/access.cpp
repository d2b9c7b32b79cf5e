#include "common/access.h"

#include <termios.h>
#include <unistd.h>

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

/// A line that somebody types, without showing it.
std::string TypedUnseen(const std::string& question) {
  termios shown{};
  const bool is_set = ::tcgetattr(STDIN_FILENO, &shown) == 0;
  termios unseen = shown;
  unseen.c_lflag &= ~static_cast<tcflag_t>(ECHO);
  if (is_set) ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &unseen);
  // Only now: what is typed before is shown, and lost.
  std::cerr << question << std::flush;
  std::string line;
  std::getline(std::cin, line);
  if (is_set) ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &shown);
  std::cerr << '\n';
  return line;
}

/// Asks where a user was named, and no password anywhere, and there is somebody at a terminal.
void AskForPassword(const LoginOptions& given, Access& access) {
  const bool wanting = given.user.IsGiven() && !given.password.IsGiven() && std::getenv(kPasswordVariable) == nullptr;
  if (!wanting || ::isatty(STDIN_FILENO) == 0 || ::isatty(STDERR_FILENO) == 0) return;
  access.password = TypedUnseen("Password of " + Shown(access.user) + ": ");
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

void AddAccessOptions(CommandLine& command, Access& access, const std::string& user_description,
                      WithoutPassword without) {
  const std::string group = "Access";
  const bool asks = without == WithoutPassword::kAsk;
  const Option user = command
                          .AddText("--user", access.user,
                                   user_description + ". Also: " + kUserVariable +
                                       (asks ? ". Without a password it is asked for, on a terminal" : ""))
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
  command.OnRead([&command, &access, given = LoginOptions{user, password}, file, file_name, asks] {
    if (file.IsGiven()) {
      TakeFile(command, *file_name, given, access);
    } else {
      TakeEnvironment(given, access);
      if (asks) AskForPassword(given, access);
    }
    KeepSecret(access.password);
  });
}

}  // namespace orbelcast
