#pragma once

#include <chrono>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "json/json.h"
#include "remote/children.h"
#include "remote/host_control.h"
#include "remote/host_surface.h"
#include "remote/late_bound.h"
#include "remote/script_dialogs.h"
#include "remote/showing.h"
#include "remote/subject.h"
#include "toolkit/controls.h"

namespace orbelcast {

/// A host application that is driven by lines of text, and prints the controls' events and answers as JSON lines.
///
/// Each line is carried out as a handler of its own, so that one that waits (for a stream, for a window that it opened)
/// can be suspended while the next lines act on the window. The session's memory stays until its last handler has
/// returned.
///
/// Every command is a private function of it, which is why it has so many.
class Session : public std::enable_shared_from_this<Session> {
 public:
  /// Of a front end on the far side of a wire.
  static constexpr std::size_t kMaxShownControls = 4;
  /// The longest side of such a control, in pixels: its surfaces may take memory.
  static constexpr int kMaxShownSide = 4096;
  /// Lines of it that are carried out at a time, most of them waiting; others are wrong.
  static constexpr int kMaxLinesAtOnce = 32;

  /// The front end's functions for the session's output.
  struct FrontEnd {
    std::function<void(const Json& line)> print;
    /// Writes a picture under the name that a line gave. Throws ScriptError where that cannot be.
    std::function<void(const Surface& picture, const std::string& name)> write_picture;
    /// Of a front end that shows the controls: there are drawings to be taken. It also tells the session to number what
    /// it answers ("line"), to print {"done":N} when a line is done, and to print the properties that a line changed.
    std::function<void()> drawn{};
  };

  /// `platform`, whose dialogs are `dialogs`, outlives the session.
  static std::shared_ptr<Session> Create(Platform& platform, ScriptDialogs& dialogs, FrontEnd front_end);
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  /// Begins to carry out a line; its errors mention `number`. The result becomes true when the line is done.
  std::shared_ptr<const bool> Begin(const std::string& line, int number);
  /// A window that a line has opened, once each: lines that act on it are to come before the line that opened it is
  /// done. Null where there is none.
  Window* TakeNewWindow();
  bool IsOpen(const Window* window) const;

  /// The drawings of a front end that shows controls, those that it has not taken yet.
  std::vector<ShownDrawing> TakeDrawings() { return silent_ ? std::vector<ShownDrawing>() : showing_.Take(); }
  /// Whether it has taken a picture that it has not told as painted, and that somebody sees.
  bool AwaitsPainting() const { return showing_.AwaitsPainting(); }

  /// Releases every control and ends every wait. Nothing is told any more. Handlers end when the loop comes to them.
  void Release();
  /// The same, and looks at the queue until they have.
  void End();
  /// A line was wrong.
  bool Wrong() const { return wrong_; }

 private:
  using Words = std::span<const std::string>;
  struct Command {
    std::string_view name;
    std::size_t least;  ///< Arguments.
    std::size_t most;
    std::string_view arguments;
    void (Session::*carry_out)(Words words);
    bool shown;  ///< One of a front end that shows the controls, too; the others are scripts'.
  };
  /// The child's name that means the object itself.
  static constexpr std::string_view kItself = ".";
  /// A `run` or an `until` in progress.
  struct Wait {
    std::string event;  ///< The event that `until` waits for; empty for `run`.
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
    bool taken = false;  ///< The front end knows of it.
  };

  Session(Platform& platform, ScriptDialogs& dialogs, FrontEnd front_end);

  // Lines.
  static std::span<const Command> Commands();
  static const Command& FindCommand(const std::string& name);
  void Execute(const std::vector<std::string>& words, int line);
  void Print(const Json& line);
  void PrintError(const std::string& text, int line);
  /// Prints the answer to a line.
  void PrintAnswer(Json line, int number);
  bool IsShown() const { return front_end_.drawn != nullptr; }
  void TellProperties();
  BulkForm Bulk() const { return IsShown() ? BulkForm::kWhole : BulkForm::kDigest; }

  // The controls' doings.
  void Adopt(const std::string& name, const HostControl& control);
  void AdoptViewer(VideoServerPush& viewer, const std::string& name);
  void AdoptWindow(Window& window, const std::string& name);
  void WindowOpened(Window& window, const std::string& name);
  void AdoptInnerViewer(VideoServerPush& viewer, const std::string& name);
  void EventCame(const std::string& event, const Json& line);
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
  MessageLoop& Loop() { return platform_.loop; }

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
  void Show(Words words);
  void Seen(Words words);
  void Unseen(Words words);
  void Painted(Words words);
  void Keep(Words words);

  Platform& platform_;
  ScriptDialogs& dialogs_;
  const FrontEnd front_end_;
  bool wrong_ = false;
  bool silent_ = false;    ///< The session has ended.
  int lines_ = 0;          ///< Begun and not done.
  int line_ = 0;           ///< The line whose command begins.
  std::list<Wait> waits_;  ///< The pending `run` and `until`.
  std::list<Reaction> reactions_;
  std::list<OpenWindow> windows_;  ///< The open ones, the newest last.
  Showing showing_;
  std::map<std::string, Json> told_;  ///< The properties' values, by path.
  server::ControlServer server_;
  std::map<std::string, std::unique_ptr<HostSurface>> surfaces_;
  std::map<std::string, std::unique_ptr<HostControl>> controls_;
};

}  // namespace orbelcast
