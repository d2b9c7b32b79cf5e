#pragma once

#include <string>

namespace orbelcast {

class CommandLine;

/// A login. It need not be on the command line, which other users of the machine can read.
struct Access {
  std::string user;
  std::string password;
};

/// Declares --user, --password and --credentials on `command`, filling `access` when it is parsed.
///
/// The command line wins over the file, and the environment (ORBELCAST_USER, ORBELCAST_PASSWORD) is
/// looked at only where no file is named: so one user's password is never sent with another one's name by accident. A
/// file that others may read is used, with a warning on standard error; one that cannot be used ends the parse with a
/// UsageError. Where --user is given and no password is anywhere, `without` says what becomes of it: kAsk asks the
/// person at the terminal, if there is one.
enum class WithoutPassword { kSendNone, kAsk };
void AddAccessOptions(CommandLine& command, Access& access, const std::string& user_description,
                      WithoutPassword without = WithoutPassword::kSendNone);

/// The live address by which a mosaic asks for a camera's tile: with the login after it, as camera servers take it.
/// An address that has one already is not changed, nor is any where there is no user.
std::string TileAddress(const std::string& live_address, const Access& access);

/// Puts `access` into the environment, for a program that replaces this one.
void PassOn(const Access& access);

/// Warns on standard error, in the program's name, that others may read `file`.
void WarnOfReaders(const CommandLine& command, const std::string& file);

}  // namespace orbelcast
