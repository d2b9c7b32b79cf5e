#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
}  // namespace CLI

/// The programs' command lines. CLI11 reads them; its header takes long to compile, so one source alone includes it.
namespace orbelcast {

/// A mistake in the command line, for people. Checks and functions called while the command line is read throw it.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
  UsageError(const std::string& option, const std::string& what_is_expected)
      : std::runtime_error(option + ": " + what_is_expected) {}
};

/// A declared option, or a word by its place. Refers to the command line, which outlives it.
class Option {
 public:
  /// The error in a text; empty where there is none.
  using Checking = std::function<std::string(const std::string&)>;

  explicit Option(CLI::Option& option) : option_(&option) {}

  Option& Required();
  /// The heading under which the help lists it.
  Option& Group(const std::string& heading);
  /// How the help calls its value; empty shows none.
  Option& ValueName(const std::string& name);
  /// Stands in the help for all that follows the name.
  Option& Form(const std::string& form);
  /// Each value is checked, in the order of these calls, before any is taken.
  Option& Check(const Checking& check);
  Option& CheckFile();
  Option& CheckFolder();
  /// Each value is shown to `see`, in the order of the checks.
  Option& ShowEach(const std::function<void(const std::string&)>& see);
  /// An option that is given more than once has its last value; otherwise that is wrong usage.
  Option& TakeLast();
  /// A list takes one value each time it is given, not all words that follow.
  Option& OneAtATime();
  Option& Needs(const Option& other);
  Option& Excludes(const Option& other);

  /// Whether the command line that was read has it.
  bool IsGiven() const;

 private:
  CLI::Option* option_;
};

/// A program's command line, or the part of it that one of its commands reads. `name` is "--option",
/// "-o,--option", or the name of a word by its place. What values are put into outlives the reading.
class CommandLine {
 public:
  CommandLine(const std::string& program, const std::string& description);
  ~CommandLine();
  CommandLine(const CommandLine&) = delete;
  CommandLine& operator=(const CommandLine&) = delete;

  /// One command of several, one of which has to be given. Belongs to this.
  CommandLine& AddCommand(const std::string& name, const std::string& summary);

  /// The text that the help ends with.
  void Footer(const std::string& text);
  /// Declares --version.
  void Version(const std::string& text);
  /// The column where the help's texts begin, in letters from the left.
  void HelpColumn(std::size_t column);

  Option AddFlag(const std::string& name, bool& value, const std::string& help);
  Option AddText(const std::string& name, std::string& value, const std::string& help);
  Option AddText(const std::string& name, std::optional<std::string>& value, const std::string& help);
  /// A text that `take` is given, which throws UsageError.
  Option AddText(const std::string& name, const std::function<void(const std::string&)>& take, const std::string& help);
  /// Takes all values that follow, however often it is given.
  Option AddList(const std::string& name, std::vector<std::string>& values, const std::string& help);
  Option AddList(const std::string& name, const std::function<void(const std::string&)>& take, const std::string& help);
  /// Four whole numbers with commas between.
  Option AddArea(const std::string& name, std::optional<std::array<int, 4>>& value, const std::string& help);
  /// A number from `least` to `most`; the help's text has to say so.
  Option AddNumber(const std::string& name, int& value, int least, int most, const std::string& help);
  Option AddNumber(const std::string& name, std::int16_t& value, int least, int most, const std::string& help);
  Option AddNumber(const std::string& name, std::optional<int>& value, int least, int most, const std::string& help);
  Option AddNumber(const std::string& name, double& value, double least, double most, const std::string& help);
  Option AddNumber(const std::string& name, std::optional<double>& value, double least, double most,
                   const std::string& help);

  /// Words that are no options of this command end it: they and all that follows are what Rest() returns. It has no
  /// --help of its own.
  void LeaveRest();
  std::vector<std::string> Rest() const;

  /// Calls `then` as soon as this command's words were read, what is wrong with others not being known yet; of several
  /// calls each, in their order.
  void OnRead(const std::function<void()>& then);
  /// Calls `then` at the end, where all else is right; of several calls each, in their order.
  void OnRight(const std::function<void()>& then);

  /// Reads a program's command line; nothing where it is right. Otherwise what is wrong was printed, and where the
  /// options are listed, or the help or the version that was asked for; returns the exit status.
  ///
  /// A word that is not understood is not printed, since it may hold a password; of an option only the name is.
  std::optional<int> Read(int argc, const char* const* argv);
  /// Whether this command is the one that was given.
  bool IsGiven() const;
  /// The program's name.
  const std::string& Program() const;

 private:
  explicit CommandLine(CLI::App& command);

  std::unique_ptr<CLI::App> owned_;  ///< Null for a command, which is its program's.
  CLI::App& app_;
  std::vector<std::unique_ptr<CommandLine>> commands_;
  std::vector<std::function<void()>> on_read_;
  std::vector<std::function<void()>> on_right_;
};

}  // namespace orbelcast
