#include "common/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iomanip>
#include <iostream>
#include <sstream>
#include <type_traits>

#include "common/exit_status.h"
#include "common/shown_text.h"

namespace orbelcast {

namespace {

template <typename Number>
CLI::Validator Within(Number least, Number most) {
  constexpr int kDigits = 12;
  std::ostringstream expected;
  expected << std::setprecision(kDigits) << "give a " << (std::is_integral_v<Number> ? "whole " : "") << "number from "
           << least << " to " << most;
  const auto check = [least, most, complaint = expected.str()](const std::string& text) {
    Number number{};
    const bool good = CLI::detail::lexical_cast(text, number) && number >= least && number <= most;
    return good ? std::string() : complaint;
  };
  return {[check](std::string& text) { return check(text); }, std::string()};
}

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

int Report(const CLI::App& app, const std::string& what_is_wrong) {
  std::cerr << app.get_name() << ": " << Shown(what_is_wrong) << "\nSee '" << FullName(app, CommandOf(app))
            << " --help'.\n";
  return kBadUsage;
}

}  // namespace

Option& Option::Required() {
  option_->required();
  return *this;
}

Option& Option::Group(const std::string& heading) {
  option_->group(heading);
  return *this;
}

Option& Option::ValueName(const std::string& name) {
  option_->type_name(name);
  return *this;
}

Option& Option::Form(const std::string& form) {
  option_->option_text(form);
  return *this;
}

Option& Option::Check(const Checking& check) {
  option_->check(check);
  return *this;
}

Option& Option::CheckFile() {
  option_->check(CLI::ExistingFile);
  return *this;
}

Option& Option::CheckFolder() {
  option_->check(CLI::ExistingDirectory);
  return *this;
}

Option& Option::ShowEach(const std::function<void(const std::string&)>& see) {
  option_->each(see);
  return *this;
}

Option& Option::TakeLast() {
  option_->take_last();
  return *this;
}

Option& Option::OneAtATime() {
  option_->allow_extra_args(false);
  return *this;
}

Option& Option::Needs(const Option& other) {
  option_->needs(other.option_);
  return *this;
}

Option& Option::Excludes(const Option& other) {
  option_->excludes(other.option_);
  return *this;
}

bool Option::IsGiven() const {
  return option_->count() > 0;
}

CommandLine::CommandLine(const std::string& program, const std::string& description)
    : owned_(std::make_unique<CLI::App>(description, program)), app_(*owned_) {}

CommandLine::CommandLine(CLI::App& command) : app_(command) {}

CommandLine::~CommandLine() = default;

CommandLine& CommandLine::AddCommand(const std::string& name, const std::string& summary) {
  app_.require_subcommand(1);
  commands_.push_back(std::unique_ptr<CommandLine>(new CommandLine(*app_.add_subcommand(name, summary))));
  return *commands_.back();
}

void CommandLine::Footer(const std::string& text) {
  app_.footer(text);
}

void CommandLine::Version(const std::string& text) {
  app_.set_version_flag("--version", text);
}

void CommandLine::HelpColumn(std::size_t column) {
  app_.get_formatter()->column_width(column);
}

Option CommandLine::AddFlag(const std::string& name, bool& value, const std::string& help) {
  return Option(*app_.add_flag(name, value, help));
}

Option CommandLine::AddText(const std::string& name, std::string& value, const std::string& help) {
  return Option(*app_.add_option(name, value, help));
}

Option CommandLine::AddText(const std::string& name, std::optional<std::string>& value, const std::string& help) {
  return Option(*app_.add_option(name, value, help));
}

Option CommandLine::AddText(const std::string& name, const std::function<void(const std::string&)>& take,
                            const std::string& help) {
  return Option(*app_.add_option_function<std::string>(name, take, help));
}

Option CommandLine::AddList(const std::string& name, std::vector<std::string>& values, const std::string& help) {
  return Option(*app_.add_option(name, values, help));
}

Option CommandLine::AddList(const std::string& name, const std::function<void(const std::string&)>& take,
                            const std::string& help) {
  const auto take_all = [take](const std::vector<std::string>& values) { std::ranges::for_each(values, take); };
  return Option(*app_.add_option_function<std::vector<std::string>>(name, take_all, help));
}

Option CommandLine::AddArea(const std::string& name, std::optional<std::array<int, 4>>& value,
                            const std::string& help) {
  return Option(*app_.add_option(name, value, help)->delimiter(','));
}

Option CommandLine::AddNumber(const std::string& name, int& value, int least, int most, const std::string& help) {
  return Option(*app_.add_option(name, value, help)->check(Within(least, most)));
}

Option CommandLine::AddNumber(const std::string& name, std::int16_t& value, int least, int most,
                              const std::string& help) {
  return Option(*app_.add_option(name, value, help)->check(Within(least, most)));
}

Option CommandLine::AddNumber(const std::string& name, std::optional<int>& value, int least, int most,
                              const std::string& help) {
  return Option(*app_.add_option(name, value, help)->check(Within(least, most)));
}

Option CommandLine::AddNumber(const std::string& name, double& value, double least, double most,
                              const std::string& help) {
  return Option(*app_.add_option(name, value, help)->check(Within(least, most)));
}

Option CommandLine::AddNumber(const std::string& name, std::optional<double>& value, double least, double most,
                              const std::string& help) {
  return Option(*app_.add_option(name, value, help)->check(Within(least, most)));
}

void CommandLine::LeaveRest() {
  app_.prefix_command();
}

std::vector<std::string> CommandLine::Rest() const {
  return app_.remaining();
}

void CommandLine::OnRead(const std::function<void()>& then) {
  app_.parse_complete_callback(then);
}

void CommandLine::OnRight(const std::function<void()>& then) {
  app_.callback(then);
}

std::optional<int> CommandLine::Read(int argc, const char* const* argv) {
  try {
    app_.parse(argc, argv);
    return std::nullopt;
  } catch (const UsageError& error) {
    return Report(app_, error.what());
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) return app_.exit(error);
    return Report(app_, WhatIsWrong(app_, error));
  }
}

bool CommandLine::IsGiven() const {
  return app_.parsed();
}

const std::string& CommandLine::Program() const {
  const CLI::App* program = &app_;
  while (program->get_parent() != nullptr) program = program->get_parent();
  return program->get_name();
}

}  // namespace orbelcast
