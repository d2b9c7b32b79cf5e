// orbelcast: cameras on the command line. commands.h lists the commands; each has a file of its own.

#include <CLI/CLI.hpp>
#include <utility>
#include <vector>

#include "common/program.h"
#include "common/usage.h"
#include "orbelcast/commands.h"
#include "toolkit/version.h"

namespace orbelcast {

namespace {

int Run(int argc, char** argv) {
  CLI::App app("Watches Motion-JPEG cameras.", "orbelcast");
  app.footer(kExitStatusOfPictures);
  app.require_subcommand(1);
  app.set_version_flag("--version", VersionText());
  std::vector<std::pair<const CLI::App*, CommandRun>> commands;
  for (const Command& each : Commands()) {
    CLI::App* const command = app.add_subcommand(each.name, each.summary);
    commands.emplace_back(command, each.build(*command));
  }
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return ReportUsage(app, error);
  }
  for (const auto& [command, run] : commands) {
    if (command->parsed()) return run();
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
