#include <iostream>
#include <memory>

#include "common/command_line.h"
#include "orbelcast/commands.h"
#include "orbelcast/watcher.h"

namespace orbelcast {

CommandRun BuildWatch(CommandLine& command) {
  command.Footer(kExitStatusOfPictures);
  const auto options = std::make_shared<WatchOptions>();
  AddWatchOptions(command, *options);
  return [options] { return Watcher(*options, std::cout, std::cerr).Run(); };
}

}  // namespace orbelcast
