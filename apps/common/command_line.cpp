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

constexpr std::size_t kHelpWidth = 100;

/// The line in lines of at most kHelpWidth. All but the first begin where the text of an option does; of a line that
/// is none, at its own first letter.
std::string Wrapped(std::string line, std::size_t text_column) {
  const std::size_t first = std::min(line.find_first_not_of(' '), line.size());
  const bool is_option = first == 2 && line.size() > text_column && line[text_column - 1] == ' ';
  const std::string indent(is_option ? text_column : first, ' ');
  std::string lines;
  while (line.size() > kHelpWidth) {
    const std::size_t blank = line.rfind(' ', kHelpWidth);
    if (blank == std::string::npos || blank <= indent.size()) break;
    lines += line.substr(0, blank) + '\n';
    line = indent + line.substr(blank + 1);
  }
  return lines + line;
}

/// The library's help, no line of which is too long, and without what excludes or needs what: the texts say it where it
/// is not plain, and wrong usage is told.
class NarrowHelp : public CLI::Formatter {
 public:
  std::string make_option_opts(const CLI::Option* option) const override {
    const std::string all = CLI::Formatter::make_option_opts(option);
    return all.substr(0, std::min(all.find(" Needs: "), all.find(" Excludes: ")));
  }

  std::string make_help(const CLI::App* app, std::string name, CLI::AppFormatMode mode) const override {
    std::istringstream help(CLI::Formatter::make_help(app, std::move(name), mode));
    std::string narrow;
    for (std::string line; std::getline(help, line);) {
      // Between groups it has two empty lines.
      if (!line.empty() || !narrow.ends_with("\n\n")) narrow += Wrapped(line, column_width_) + '\n';
    }
    return narrow;
  }
};

/// How many letters have to be added, left out, replaced or swapped with the next to make `b` of `a`.
std::size_t Distance(std::string_view a, std::string_view b) {
  std::vector<std::vector<std::size_t>> steps(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
  for (std::size_t i = 0; i <= a.size(); ++i) {
    for (std::size_t j = 0; j <= b.size(); ++j) {
      if (i == 0 || j == 0) {
        steps[i][j] = i + j;
        continue;
      }
      const std::size_t other = a[i - 1] == b[j - 1] ? 0 : 1;
      steps[i][j] = std::min({steps[i - 1][j] + 1, steps[i][j - 1] + 1, steps[i - 1][j - 1] + other});
      const bool swapped = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
      if (swapped) steps[i][j] = std::min(steps[i][j], steps[i - 2][j - 2] + 1);
    }
  }
  return steps[a.size()][b.size()];
}

/// "; did you mean X?" of the name that is like `word`: as far from it as two slips of the fingers, or its whole
/// beginning. Empty where none is.
std::string DidYouMean(std::string_view word, const std::vector<std::string>& names) {
  constexpr std::size_t kSlips = 2;
  constexpr std::size_t kGuessableLetters = 40;
  if (word.empty() || word.size() > kGuessableLetters) return {};
  const std::string* nearest = nullptr;
  std::size_t distance = std::min(kSlips, word.size() / 2) + 1;
  for (const std::string& name : names) {
    const bool begins = word.size() > 3 && name.starts_with(word);
    const std::size_t far = begins ? 1 : Distance(word, name);
    if (far >= distance) continue;
    nearest = &name;
    distance = far;
  }
  return nearest == nullptr ? "" : "; did you mean " + *nearest + "?";
}

std::vector<std::string> OptionNames(const CLI::App& command) {
  std::vector<std::string> names;
  for (const CLI::Option* option : command.get_options()) {
    for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
  }
  return names;
}

/// The command that was being used: the program itself where none was named.
const CLI::App& CommandOf(const CLI::App& app) {
  const auto commands = app.get_subcommands();
  return commands.empty() ? app : *commands.front();
}

std::string FullName(const CLI::App& app, const CLI::App& command) {
  return &app == &command ? app.get_name() : app.get_name() + " " + command.get_name();
}

/// The commands that there are; none where one is chosen, or the program has none.
std::vector<std::string> CommandsToChoose(const CLI::App& app) {
  std::vector<std::string> names;
  if (!app.get_subcommands().empty()) return names;
  for (const CLI::App* each : app.get_subcommands([](const CLI::App*) { return true; })) {
    names.push_back(each->get_name());
  }
  return names;
}

std::string Joined(const std::vector<std::string>& names) {
  std::string list;
  for (const std::string& name : names) list += (list.empty() ? "" : ", ") + name;
  return list;
}

/// About words that nothing takes.
std::string UnexpectedWords(const CLI::App& app, const std::vector<std::string>& words) {
  std::vector<std::string> options;
  for (const std::string& word : words) {
    if (word.starts_with('-')) options.push_back(word.substr(0, word.find('=')));
  }
  if (!options.empty()) {
    return "unknown option: " + Joined(options) + DidYouMean(options.front(), OptionNames(CommandOf(app)));
  }
  const std::vector<std::string> commands = CommandsToChoose(app);
  if (commands.empty()) return "there are more words than the command takes";
  const std::string meant = DidYouMean(words.front(), commands);
  return "there is no such command" + (meant.empty() ? "; there are " + Joined(commands) : meant);
}

std::string WhatIsWrong(const CLI::App& app, const CLI::ParseError& error) {
  const std::vector<std::string> words = app.remaining(true);
  if (dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr) return UnexpectedWords(app, words);
  const std::vector<std::string> commands = CommandsToChoose(app);
  if (commands.empty()) return error.what();
  return words.empty() ? "name a command: " + Joined(commands) : UnexpectedWords(app, words);
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
    : owned_(std::make_unique<CLI::App>(description, program)), app_(*owned_) {
  app_.formatter(std::make_shared<NarrowHelp>());
}

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
  app_.set_help_flag();
}

std::vector<std::string> CommandLine::Rest() const {
  return app_.remaining();
}

void CommandLine::OnRead(const std::function<void()>& then) {
  on_read_.push_back(then);
  app_.parse_complete_callback([this] {
    for (const auto& each : on_read_) each();
  });
}

void CommandLine::OnRight(const std::function<void()>& then) {
  on_right_.push_back(then);
  app_.callback([this] {
    for (const auto& each : on_right_) each();
  });
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
