#include "common/usage.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <string>
#include <vector>

#include "common/exit_status.h"
#include "common/shown_text.h"

namespace orbelcast {

namespace {

/// The command that was being used: the program itself where none was named.
const CLI::App& CommandOf(const CLI::App& app) {
  const auto commands = app.get_subcommands();
  return commands.empty() ? app : *commands.front();
}

std::string FullName(const CLI::App& app, const CLI::App& command) {
  return &app == &command ? app.get_name() : app.get_name() + " " + command.get_name();
}

/// The commands that there are; empty where one is chosen, or the program has none.
std::string CommandsToChoose(const CLI::App& app) {
  if (!app.get_subcommands().empty()) return {};
  std::string names;
  for (const CLI::App* each : app.get_subcommands([](const CLI::App*) { return true; })) {
    names += (names.empty() ? "" : ", ") + each->get_name();
  }
  return names;
}

/// About words that nothing takes.
std::string UnexpectedWords(const CLI::App& app, const std::vector<std::string>& words) {
  std::string options;
  for (const std::string& word : words) {
    if (word.starts_with('-')) options += (options.empty() ? "" : ", ") + word.substr(0, word.find('='));
  }
  if (!options.empty()) return "unknown option: " + options;
  const std::string commands = CommandsToChoose(app);
  return commands.empty() ? "there are more words than the command takes"
                          : "there is no such command; there are " + commands;
}

std::string WhatIsWrong(const CLI::App& app, const CLI::ParseError& error) {
  const std::vector<std::string> words = app.remaining(true);
  if (dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr) return UnexpectedWords(app, words);
  const std::string commands = CommandsToChoose(app);
  if (commands.empty()) return error.what();
  return words.empty() ? "name a command: " + commands : UnexpectedWords(app, words);
}

}  // namespace

int ReportUsage(const CLI::App& app, const CLI::ParseError& error) {
  if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) return app.exit(error);
  const CLI::App& command = CommandOf(app);
  std::cerr << app.get_name() << ": " << Shown(WhatIsWrong(app, error)) << "\nSee '" << FullName(app, command)
            << " --help'.\n";
  return kBadUsage;
}

}  // namespace orbelcast
