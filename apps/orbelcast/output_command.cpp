#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "common/command_line.h"
#include "common/shown_text.h"
#include "orbelcast/commands.h"
#include "orbelcast/event_json.h"
#include "orbelcast/server_entries.h"
#include "orbelcast/server_talk.h"
#include "protocol/server_address.h"
#include "toolkit/ascii.h"

namespace orbelcast {

namespace {

/// The kind of things that are listed, or chosen from: outputs or alerts.
struct Kind {
  const char* name;  ///< "output"
  const char* key;   ///< Of its lines.
  const char* on;    ///< The words for its states.
  const char* off;
};

constexpr Kind kOutput{"output", "HWO:", "on", "off"};
constexpr Kind kAlert{"alert", "ALT:", "active", "quiet"};

struct SwitchOptions {
  ServerOptions server;
  std::string choice;  ///< A number or a name; empty lists all.
  std::optional<bool> on;
  bool json = false;
};

constexpr const char* kExitStatus =
    "Exit status: 0 it worked; 1 the server did not answer, refused, or has no such thing; 2 wrong usage.";

/// A camera server's outputs or alerts, and what is done with one of them.
class Switch {
 public:
  Switch(const SwitchOptions& options, const Kind& kind) : options_(options), kind_(kind), server_(options.server) {}

  ExitStatus Run() {
    if (!Ask()) return Fail();
    if (options_.choice.empty()) return List();
    const std::size_t place = PlaceOf(entries_, options_.choice);
    if (place == 0) {
      problem_ = Problem{
          .kind = "unknown",
          .text = "there is no " + std::string(kind_.name) + " '" + Shown(options_.choice) + "'; there are " + Names()};
      return Fail();
    }
    if (options_.on && !Set(place)) return Fail();
    Print(place);
    return kWorked;
  }

 private:
  bool Ask() {
    const ServerInfo info = server_.AskForInformation();
    problem_ = server_.WhyNoInformation(info);
    entries_ = EntriesOf(info, kind_.key);
    return !problem_;
  }

  /// Nothing of the answer tells what it did: the server is asked once more.
  bool Set(std::size_t place) {
    const bool on = *options_.on;
    const int number = static_cast<int>(place);
    server_.Send([&](const std::string& base) {
      return &kind_ == &kAlert ? AlertActivationAddress(AlertCommand(base), number)
                               : OutputSwitchAddress(OutputCommand(base), number, on);
    });
    problem_ = server_.WhyNo("answer");
    if (problem_ || !Ask()) return false;
    const bool has_it = place <= entries_.size() && IsOn(entries_[place - 1]) == on;
    if (!has_it && &kind_ == &kOutput) {
      problem_ = Problem{.kind = "not-switched", .text = "the server answered, and still has the output otherwise"};
    }
    return !problem_;
  }

  ExitStatus List() const {
    if (options_.json) {
      Json list = Json::Array();
      for (std::size_t place = 1; place <= entries_.size(); ++place) list.Append(JsonOf(place));
      std::cout << ToLine(WithoutPasswords(list)) << '\n';
      return kWorked;
    }
    for (std::size_t place = 1; place <= entries_.size(); ++place) Print(place);
    return kWorked;
  }

  void Print(std::size_t place) const {
    if (place > entries_.size()) return;
    if (options_.json && !options_.choice.empty()) {
      std::cout << ToLine(WithoutPasswords(JsonOf(place))) << '\n';
      return;
    }
    const Entry& entry = entries_[place - 1];
    std::cout << place << "  " << Shown(entry.Field(1)) << "  " << (IsActive(entry) ? kind_.on : kind_.off) << '\n';
  }

  Json JsonOf(std::size_t place) const {
    const Entry& entry = entries_[place - 1];
    return {{"number", place}, {"name", entry.Field(1)}, {kind_.on, IsActive(entry)}};
  }

  /// A state that is missing counts as on, of an alert as quiet.
  bool IsActive(const Entry& entry) const { return &kind_ == &kAlert ? entry.Field(2) == "1" : IsOn(entry); }

  std::string Names() const {
    std::string names;
    for (const Entry& entry : entries_) names += (names.empty() ? "" : ", ") + Shown(entry.Field(1));
    return names.empty() ? "none" : names;
  }

  ExitStatus Fail() const {
    Tell(*problem_, std::cerr);
    if (options_.json) std::cout << ToLine(Json{{"error", ToJson(*problem_)}}) << '\n';
    return kNoPictures;
  }

  const SwitchOptions& options_;
  const Kind& kind_;
  ServerTalk server_;
  std::vector<Entry> entries_;
  std::optional<Problem> problem_;
};

std::string CheckMessage(const std::string& text) {
  if (text.empty()) return "there is nothing to send";
  return HasControlCharacter(text) ? "it holds a line break or another control character" : "";
}

void AddChoice(CommandLine& command, const std::string& name, const Kind& kind, SwitchOptions& options) {
  AddServerOptions(command, options.server);
  command
      .AddText(name, options.choice,
               "The " + std::string(kind.name) + ", by its number or its name (default: all are listed)")
      .ValueName("");
  command.AddFlag("--json", options.json, "Print JSON, for programs").Group("Output");
  command.Footer(kExitStatus);
}

ExitStatus SendMessage(const ServerOptions& options, const std::string& text) {
  ServerTalk server(options);
  server.Send([&](const std::string& base) { return MessageAddress(base, text); });
  const auto problem = server.WhyNo("answer");
  if (!problem) return kWorked;
  Tell(*problem, std::cerr);
  return kNoPictures;
}

}  // namespace

CommandRun BuildOutput(CommandLine& command) {
  const auto options = std::make_shared<SwitchOptions>();
  AddChoice(command, "OUTPUT", kOutput, *options);
  const auto take = [options](const std::string& text) {
    if (text != "on" && text != "off") throw UsageError("STATE", "give on or off");
    options->on = text == "on";
  };
  command.AddText("STATE", take, "on or off, to switch it (default: its state is told)").ValueName("");
  return [options] { return Switch(*options, kOutput).Run(); };
}

CommandRun BuildAlert(CommandLine& command) {
  const auto options = std::make_shared<SwitchOptions>();
  AddChoice(command, "ALERT", kAlert, *options);
  command.OnRight([options] {
    if (!options->choice.empty()) options->on = true;
  });
  return [options] { return Switch(*options, kAlert).Run(); };
}

CommandRun BuildMessage(CommandLine& command) {
  const auto options = std::make_shared<ServerOptions>();
  const auto text = std::make_shared<std::string>();
  AddServerOptions(command, *options);
  command.AddText("TEXT", *text, "The message, one line").Required().Check(CheckMessage).ValueName("");
  command.Footer(kExitStatus);
  return [options, text] { return SendMessage(*options, *text); };
}

}  // namespace orbelcast
