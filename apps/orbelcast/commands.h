#pragma once

#include <functional>
#include <span>

#include "common/exit_status.h"

namespace orbelcast {

class CommandLine;

/// Does a command, once its options were parsed.
using CommandRun = std::function<ExitStatus()>;

/// A command of the program.
struct Command {
  const char* name;
  const char* summary;
  /// Declares the command's options on `command`, which outlives the result.
  CommandRun (*build)(CommandLine& command);
};

/// All of them, in the order in which the help lists them.
std::span<const Command> Commands();

// Each in the file of its name.
CommandRun BuildPlay(CommandLine& command);
CommandRun BuildWatch(CommandLine& command);
CommandRun BuildInfo(CommandLine& command);
CommandRun BuildDoctor(CommandLine& command);
CommandRun BuildMosaic(CommandLine& command);
CommandRun BuildRecord(CommandLine& command);
CommandRun BuildSnapshot(CommandLine& command);
CommandRun BuildLog(CommandLine& command);
CommandRun BuildOutput(CommandLine& command);
CommandRun BuildAlert(CommandLine& command);
CommandRun BuildMessage(CommandLine& command);
CommandRun BuildRegister(CommandLine& command);
CommandRun BuildUnregister(CommandLine& command);
CommandRun BuildServe(CommandLine& command);

/// The exit statuses, in the help of the program and of the commands that show pictures.
inline constexpr const char* kExitStatusOfPictures =
    "Exit status: 0 it worked; 1 the connection failed, was broken at the end, or no\n"
    "picture (of info: no information) came; 2 wrong usage, a file that cannot be\n"
    "written (standard output is one), or a missing player.";

}  // namespace orbelcast
