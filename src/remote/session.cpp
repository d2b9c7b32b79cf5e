#include "remote/session.h"

#include <algorithm>
#include <chrono>
#include <limits>
#include <utility>

#include "interface/events.h"
#include "remote/children.h"
#include "remote/event_to_json.h"
#include "remote/numbers.h"
#include "remote/script_error.h"
#include "remote/variant_json.h"
#include "remote/words.h"
#include "toolkit/twips.h"
#include "viewer/video_server_push.h"

namespace orbelcast {

namespace {

/// Looks at the queue that a handler gets to end in once nothing holds it up any more.
constexpr int kRoundsToEnd = 16;

}  // namespace

const Session::Command& Session::FindCommand(const std::string& name) {
  for (const Command& command : Commands()) {
    if (command.name == name) return command;
  }
  throw ScriptError("there is no command '" + name + "'");
}

std::shared_ptr<Session> Session::Create(Platform& platform, ScriptDialogs& dialogs, FrontEnd front_end) {
  return std::shared_ptr<Session>(new Session(platform, dialogs, std::move(front_end)));
}

Session::Session(Platform& platform, ScriptDialogs& dialogs, FrontEnd front_end)
    : platform_(platform),
      dialogs_(dialogs),
      front_end_(std::move(front_end)),
      showing_(
          platform.pictures, [this](const Json& line) { Print(line); },
          [this] {
            if (IsShown() && !silent_) front_end_.drawn();
          }),
      server_(platform) {}

void Session::Release() {
  const auto alive = shared_from_this();
  silent_ = true;
  dialogs_.End();
  controls_.clear();
  // Waits inside an event end as well.
  for (Wait& wait : waits_) wait.over.Complete();
}

void Session::End() {
  const auto alive = shared_from_this();
  Release();
  for (int round = 0; round < kRoundsToEnd; ++round) Loop().Queue().HandleDue();
}

// ---- Lines ----------------------------------------------------------------------------------------------------------

std::shared_ptr<const bool> Session::Begin(const std::string& line, int number) {
  const auto done = std::make_shared<bool>(true);
  std::vector<std::string> words;
  try {
    words = SplitWords(line);
  } catch (const ScriptError& error) {
    PrintError(error.what(), number);
  }
  if (words.empty()) return done;
  if (IsShown() && lines_ >= kMaxLinesAtOnce) {
    PrintError("too many commands at a time", number);
    return done;
  }
  *done = false;
  ++lines_;
  Loop().RunHandler([self = shared_from_this(), words = std::move(words), number, done] {
    self->Execute(words, number);
    *done = true;
    --self->lines_;
    if (!self->IsShown() || words.front() == "painted") return;
    self->TellProperties();
    self->Print({{"done", number}});
  });
  return done;
}

void Session::Execute(const std::vector<std::string>& words, int line) {
  line_ = line;
  try {
    const Command& command = FindCommand(words.front());
    if (IsShown() && !command.shown) throw ScriptError(std::string(command.name) + " is for scripts");
    const Words arguments = Words(words).subspan(1);
    if (arguments.size() < command.least || arguments.size() > command.most) {
      throw ScriptError(std::string(command.name) + " takes " + std::string(command.arguments));
    }
    (this->*command.carry_out)(arguments);
  } catch (const std::exception& error) {
    PrintError(error.what(), line);
  }
}

Window* Session::TakeNewWindow() {
  for (OpenWindow& window : windows_) {
    if (window.taken) continue;
    window.taken = true;
    return window.window;
  }
  return nullptr;
}

bool Session::IsOpen(const Window* window) const {
  return std::any_of(windows_.begin(), windows_.end(), [&](const OpenWindow& open) { return open.window == window; });
}

void Session::Print(const Json& line) {
  if (!silent_) front_end_.print(line);
}

void Session::PrintError(const std::string& text, int line) {
  wrong_ = true;
  Print({{"error", text}, {"line", line}});
}

void Session::PrintAnswer(Json line, int number) {
  if (IsShown()) line["line"] = number;
  Print(line);
}

// Those that differ from what was told last.
void Session::TellProperties() {
  for (const auto& [name, control] : controls_) {
    if (silent_) return;
    LateBound members = control->Members();
    for (const server::MemberInfo& member : control->Class().members) {
      if (member.kind != server::kPropertyMember) continue;
      Json value = members.Get(member.name);
      const std::string path = name + "." + member.name;
      const auto told = told_.find(path);
      if (told != told_.end() && told->second == value) continue;
      told_[path] = value;
      Print({{"property", path}, {"value", std::move(value)}});
    }
  }
}

// ---- Controls and their events --------------------------------------------------------------------------------------

void Session::Adopt(const std::string& name, const HostControl& control) {
  const Subject subject{control.Viewer(), control.Player(), nullptr};
  if (subject.viewer != nullptr) AdoptViewer(*subject.viewer, name);
  if (VideoServerPush* const inner = subject.Inner("VS")) AdoptInnerViewer(*inner, name + ".VS");
  for (const auto& [window_name, window] : subject.Windows()) AdoptWindow(*window, window_name);
}

void Session::AdoptViewer(VideoServerPush& viewer, const std::string& name) {
  viewer.MainMenu.PoppedUp.Listen([this, name, &menu = viewer.MainMenu] {
    Json items = Json::Array();
    for (const MenuItem* item : menu.Items) {
      items.Append({{"caption", item->Caption.Get()}, {"checked", item->Checked.Get()}});
    }
    Print({{"menu", name}, {"items", std::move(items)}});
  });
}

void Session::AdoptInnerViewer(VideoServerPush& viewer, const std::string& name) {
  AdoptViewer(viewer, name);
  ListenToAll(viewer.Events, [this, name](const EventEntry& event, std::span<const EventArgument> arguments) {
    EventCame(std::string(event.name), EventToJson(event, name, arguments));
  });
}

void Session::AdoptWindow(Window& window, const std::string& name) {
  const Subject subject{nullptr, nullptr, &window};
  subject.ListenToViewers([this, name](const std::string& viewer_name, VideoServerPush& viewer) {
    AdoptInnerViewer(viewer, name + "." + viewer_name);
  });
  window.Opened.Listen([this, &window, name] { WindowOpened(window, name); });
  window.Closed.Listen([this, &window, name] {
    std::erase_if(windows_, [&](const OpenWindow& open) { return open.window == &window; });
    showing_.End(name + ".vs");
    Print({{"closed", name}});
  });
}

void Session::WindowOpened(Window& window, const std::string& name) {
  windows_.push_back({&window, name});
  Print({{"window", name}, {"caption", window.Caption.Get()}});
  if (showing_.Shows()) showing_.Begin(name, Subject{nullptr, nullptr, &window});
  // A front end that shows it gives it its size.
  if (window.FullScreen && IsShown()) return;
  if (window.FullScreen) {
    const auto scale = TwipsScale::Of(platform_.screen);
    window.Width = scale.TwipsX(platform_.screen.Width());
    window.Height = scale.TwipsY(platform_.screen.Height());
  }
  if (const auto resized = window.OnResize) resized();
}

void Session::EventCame(const std::string& event, const Json& line) {
  const auto alive = shared_from_this();
  Print(line);
  for (Wait& wait : waits_) wait.came = wait.came || wait.event == event;

  std::list<Reaction> due;
  for (auto next = reactions_.begin(); next != reactions_.end();) {
    const auto reaction = next++;
    if (reaction->event == event) due.splice(due.end(), reactions_, reaction);
  }
  for (const Reaction& reaction : due) Execute(reaction.words, reaction.line);

  // Last: a wait for an event goes on when the host has handled it.
  for (Wait& wait : waits_) {
    if (wait.came && wait.event == event) wait.over.Complete();
  }
}

// ---- Names ----------------------------------------------------------------------------------------------------------

Subject Session::Find(const std::string& name) {
  const std::size_t dot = name.find('.');
  const std::string outer = name.substr(0, dot);
  Subject subject;
  if (const auto control = controls_.find(outer); control != controls_.end()) {
    subject = {control->second->Viewer(), control->second->Player(), nullptr};
  }
  for (const OpenWindow& open : windows_) {
    if (!subject && open.name == outer) subject.window = open.window;
  }
  if (subject && dot != std::string::npos) subject = {subject.Inner(name.substr(dot + 1)), nullptr, nullptr};
  if (!subject) throw ScriptError("there is no '" + name + "'");
  return subject;
}

Child Session::FindChild(const std::string& name, const std::string& child) {
  Subject subject = Find(name);
  std::string rest = child;
  if (const std::size_t dot = child.find('.'); dot != std::string::npos) {
    if (VideoServerPush* const inner = subject.Inner(child.substr(0, dot))) {
      subject = {inner, nullptr, nullptr};
      rest = child.substr(dot + 1);
    }
  }
  return orbelcast::FindChild(subject.Children(), rest, name + "." + child);
}

HostControl& Session::FindControl(const std::string& name) {
  const auto found = controls_.find(name);
  if (found == controls_.end()) throw ScriptError("there is no control '" + name + "'");
  return *found->second;
}

LateBound Session::MembersOf(const std::string& name) {
  if (const auto found = controls_.find(name); found != controls_.end()) return found->second->Members();
  const Subject subject = Find(name);
  if (subject.viewer == nullptr) throw ScriptError(name + " has no members");
  // The viewer stays its player's.
  return LateBound(server_.Host(*server::FindClass(server::kVideoServerPushClass),
                                std::shared_ptr<void>(std::shared_ptr<void>(), subject.viewer),
                                server::Raises::kNothing));
}

const Surface& Session::FindPicture(const std::string& name, const std::string& child) {
  const auto surface = surfaces_.find(name);
  if (surface == surfaces_.end()) return SurfaceOf(FindChild(name, child));
  if (child != kItself) throw ScriptError(name + " is a surface, whose picture is '" + name + " .'");
  return surface->second->surface;
}

void Session::CheckEvent(const std::string& event) const {
  const bool known = std::ranges::any_of(ViewerEvents(), [&](const EventEntry& each) { return each.name == event; });
  if (!known) throw ScriptError("there is no event '" + event + "'");
}

void Session::CheckNew(const std::string& name) const {
  if (name.empty() || name.find('.') != std::string::npos) throw ScriptError("a name is not empty and has no dot");
  if (IsShown() && controls_.size() >= kMaxShownControls) throw ScriptError("a session shows no more controls");
  if (controls_.contains(name) || surfaces_.contains(name)) throw ScriptError("there is a '" + name + "' already");
}

}  // namespace orbelcast
