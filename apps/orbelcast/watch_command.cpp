#include <iostream>
#include <memory>

#include "common/command_line.h"
#include "orbelcast/camera_address.h"
#include "orbelcast/commands.h"
#include "orbelcast/watcher.h"

namespace orbelcast {

namespace {

ExitStatus Watch(WatchOptions& options) {
  if (const auto problem = FindPicture(options.stream, options.time_out)) {
    Tell(*problem, std::cerr);
    return kNoPictures;
  }
  return Watcher(options, std::cout, std::cerr).Run();
}

}  // namespace

CommandRun BuildWatch(CommandLine& command) {
  command.Footer(kExitStatusOfPictures);
  const auto options = std::make_shared<WatchOptions>();
  AddWatchOptions(command, *options);
  return [options] { return Watch(*options); };
}

}  // namespace orbelcast
