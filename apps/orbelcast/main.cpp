// orbelcast: cameras on the command line. commands.h lists the commands; each has a file of its own.

#include <utility>
#include <vector>

#include "common/command_line.h"
#include "common/program.h"
#include "orbelcast/commands.h"
#include "toolkit/version.h"

namespace orbelcast {

namespace {

int Run(int argc, char** argv) {
  CommandLine line("orbelcast", "Watches Motion-JPEG cameras.");
  line.Footer(kExitStatusOfPictures);
  line.Version(VersionText());
  std::vector<std::pair<const CommandLine*, CommandRun>> commands;
  for (const Command& each : Commands()) {
    CommandLine& command = line.AddCommand(each.name, each.summary);
    commands.emplace_back(&command, each.build(command));
  }
  if (const auto status = line.Read(argc, argv)) return *status;
  for (const auto& [command, run] : commands) {
    if (command->IsGiven()) return run();
  }
  return kBadUsage;  // not reached: a command is required
}

}  // namespace

}  // namespace orbelcast

// NOLINTNEXTLINE(bugprone-exception-escape): what escapes is a lack of memory, which ends the program.
int main(int argc, char** argv) {
  orbelcast::SurviveFailedWrites();
  return orbelcast::EndOutput("orbelcast", orbelcast::Run(argc, argv));
}
