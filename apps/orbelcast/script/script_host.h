#pragma once

#include <chrono>
#include <functional>
#include <iosfwd>
#include <list>
#include <map>
#include <memory>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "children.h"
#include "event_json.h"
#include "host_control.h"
#include "line_reader.h"
#include "script_dialogs.h"
#include "subject.h"
#include "toolkit/controls.h"

namespace orbelcast {

/// A host application that does what a script says, line by line, and prints what the controls do as JSON lines.
///
/// The lines are read on the program's own stack, which also runs the message loop; each is carried out as a handler of
/// its own, so that one that waits (for a stream, for a window that it opened) can be suspended while the next lines
/// act on the window.
class ScriptHost {
 public:
  ScriptHost(std::istream& input, std::ostream& output);
  ~ScriptHost();
  ScriptHost(const ScriptHost&) = delete;
  ScriptHost& operator=(const ScriptHost&) = delete;

  /// Carries out every line. True where no command was wrong.
  bool Run();

 private:
  using Words = std::span<const std::string>;
  struct Command;
  struct HostSurface;
  /// A `run` or an `until` in progress.
  struct Wait {
    std::string event;  ///< What `until` waits for; empty for `run`.
    bool came = false;
    Completion over;
  };
  /// An `on` whose event has not come yet.
  struct Reaction {
    std::string event;
    std::vector<std::string> words;
    int line = 0;
  };
  struct OpenWindow {
    Window* window = nullptr;
    std::string name;
    bool served = false;  ///< Its lines are being read.
  };

  // Lines.
  static std::span<const Command> Commands();
  static const Command& FindCommand(const std::string& name);
  void CarryOut(const ScriptLine& line);
  void Execute(const std::vector<std::string>& words, int line);
  /// Reads lines until the window has closed, or the script has ended, which closes it.
  void Serve(OpenWindow& window);
  OpenWindow* UnservedWindow();
  bool IsOpen(const Window* window) const;
  void Print(const Json& line);
  void PrintError(const std::string& text, int line);

  // What the controls do.
  void Adopt(const std::string& name, const HostControl& control);
  void AdoptViewer(VideoServerPush& viewer, const std::string& name);
  void AdoptWindow(Window& window, const std::string& name);
  void WindowOpened(Window& window, const std::string& name);
  void AdoptInnerViewer(VideoServerPush& viewer, const std::string& name);
  void EventCame(const Json& line);
  /// Runs the loop until the event has come (true) or the time has passed.
  bool WaitFor(const std::string& event, std::chrono::milliseconds limit);

  // Names.
  Subject Find(const std::string& name);
  Child FindChild(const std::string& name, const std::string& child);
  HostControl& FindControl(const std::string& name);
  LateBound MembersOf(const std::string& name);
  const Surface& FindPicture(const std::string& name, const std::string& child);
  void CheckEvent(const std::string& event) const;
  void CheckNew(const std::string& name) const;
  void Write(const Surface& picture, const std::string& file);
  MessageLoop& Loop() { return server_.GetPlatform().loop; }

  // The commands.
  void Create(Words words);
  void Place(Words words);
  void Load(Words words);
  void Get(Words words);
  void Set(Words words);
  void Call(Words words);
  void Members(Words words);
  void Hide(Words words);
  void Destroy(Words words);
  void Control(Words words);
  void Click(Words words);
  void Watch(Words words);
  void Select(Words words);
  void Type(Words words);
  void Leave(Words words);
  void Press(Words words);
  void Drop(Words words);
  void ChooseMenu(Words words);
  void Pixel(Words words);
  void Picture(Words words);
  void Close(Words words);
  void RunFor(Words words);
  void Until(Words words);
  void On(Words words);
  void Answer(Words words);
  void ShowClipboard(Words words);
  void MakeSurface(Words words);
  void ReadRegistry(Words words);
  void PrintText(Words words);

  LineReader lines_;
  std::ostream& output_;
  bool wrong_ = false;   ///< A command was wrong.
  bool silent_ = false;  ///< The script has ended: what the controls still do is nobody's business.
  int line_ = 0;         ///< The line whose command begins.
  std::set<std::string, std::less<>> events_;  ///< The names of all events.
  std::list<Wait> waits_;                      ///< What `run` and `until` wait for.
  std::list<Reaction> reactions_;
  std::list<OpenWindow> windows_;  ///< The open ones, the newest last.
  ScriptDialogs dialogs_;
  // From here on what handlers go by that still wait at the end.
  server::ControlServer server_;
  std::map<std::string, std::unique_ptr<HostSurface>> surfaces_;
  std::map<std::string, std::unique_ptr<HostControl>> controls_;
};

}  // namespace orbelcast
