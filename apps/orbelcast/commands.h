#pragma once

#include <functional>
#include <span>

#include "common/exit_status.h"

namespace CLI {
class App;
}

namespace orbelcast {

/// Does a command, once its options were parsed.
using CommandRun = std::function<ExitStatus()>;

/// A command of the program.
struct Command {
  const char* name;
  const char* summary;
  /// Declares the command's options on `command`, which outlives the result.
  CommandRun (*build)(CLI::App& command);
};

/// All of them, in the order in which the help lists them.
std::span<const Command> Commands();

// Each in the file of its name.
CommandRun BuildPlay(CLI::App& command);
CommandRun BuildWatch(CLI::App& command);
CommandRun BuildInfo(CLI::App& command);
CommandRun BuildDoctor(CLI::App& command);
CommandRun BuildMosaic(CLI::App& command);
CommandRun BuildRecord(CLI::App& command);
CommandRun BuildSnapshot(CLI::App& command);
CommandRun BuildLog(CLI::App& command);
CommandRun BuildRegister(CLI::App& command);
CommandRun BuildUnregister(CLI::App& command);

/// The exit statuses, in the help of the program and of the commands that show pictures.
inline constexpr const char* kExitStatusOfPictures =
    "Exit status: 0 it worked; 1 the connection failed, was broken at the end, or no\n"
    "picture (of info: no information) came; 2 wrong usage, a file that cannot be\n"
    "written (standard output is one), or a missing player.";

}  // namespace orbelcast
