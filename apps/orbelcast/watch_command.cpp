#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>

#include "orbelcast/commands.h"
#include "orbelcast/watcher.h"

namespace orbelcast {

CommandRun BuildWatch(CLI::App& command) {
  command.footer(kExitStatusOfPictures);
  const auto options = std::make_shared<WatchOptions>();
  AddWatchOptions(command, *options);
  return [options] { return Watcher(*options, std::cout, std::cerr).Run(); };
}

}  // namespace orbelcast
