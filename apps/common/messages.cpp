#include "common/messages.h"

#include <iostream>

#include "common/command_line.h"

namespace orbelcast {

void AddMessageOptions(CommandLine& command, Messages& messages) {
  const std::string group = "Messages";
  const Option silent =
      command.AddFlag("-s,--silent", messages.silent, "Print no message at all: the exit status tells").Group(group);
  command.AddFlag("-q,--quiet", messages.quiet, "Print no message but of what fails").Group(group);
  command.AddFlag("-v,--verbose", messages.verbose, "Tell of each request, and of how it ended")
      .Group(group)
      .Excludes(silent);
  command.OnRead([&messages] {
    if (!messages.silent) return;
    messages.quiet = true;
    std::cerr.rdbuf(nullptr);
  });
}

}  // namespace orbelcast
