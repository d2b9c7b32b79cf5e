#include "script_host.h"

#include <algorithm>
#include <chrono>
#include <limits>
#include <ostream>

#include "children.h"
#include "numbers.h"
#include "picture_file.h"
#include "script_error.h"
#include "variant_json.h"
#include "viewer/interface.h"
#include "viewer/video_server_push.h"
#include "words.h"

namespace orbelcast {

namespace {

using std::chrono::milliseconds;

constexpr std::string_view kItself = ".";
/// Milliseconds that `until` waits where the script does not say.
constexpr int kUntilDefault = 5000;
/// Looks at the queue that a handler gets to end in once nothing holds it up any more.
constexpr int kRoundsToEnd = 16;

milliseconds ParseTime(const std::string& word) {
  return milliseconds(ParseWhole<std::int32_t>(word, "the time in milliseconds", 0));
}

}  // namespace

struct ScriptHost::Command {
  std::string_view name;
  std::size_t least;  ///< Arguments.
  std::size_t most;
  std::string_view arguments;
  void (ScriptHost::*carry_out)(Words words);
};

/// A surface of the host's own, lent to the controls for as long as it lives.
struct ScriptHost::HostSurface {
  HostSurface(DeviceContexts& contexts, int width, int height)
      : device_contexts(contexts), surface(width, height), device_context(contexts.Add(surface)) {}
  ~HostSurface() { device_contexts.Remove(device_context); }
  HostSurface(const HostSurface&) = delete;
  HostSurface& operator=(const HostSurface&) = delete;

  DeviceContexts& device_contexts;
  Surface surface;
  std::int32_t device_context;
};

std::span<const ScriptHost::Command> ScriptHost::Commands() {
  constexpr std::size_t kAny = std::numeric_limits<std::size_t>::max();
  static constexpr Command kCommands[] = {
      {"create", 2, 2, "NAME CLASS", &ScriptHost::Create},
      {"place", 3, 3, "NAME WIDTH HEIGHT", &ScriptHost::Place},
      {"load", 1, kAny, "NAME KEY=VALUE ...", &ScriptHost::Load},
      {"get", 2, 2, "NAME MEMBER", &ScriptHost::Get},
      {"set", 3, 3, "NAME MEMBER VALUE", &ScriptHost::Set},
      {"call", 2, kAny, "NAME METHOD [ARG ...]", &ScriptHost::Call},
      {"members", 1, 1, "CLASS", &ScriptHost::Members},
      {"hide", 1, 1, "NAME", &ScriptHost::Hide},
      {"destroy", 1, 1, "NAME", &ScriptHost::Destroy},
      {"control", 2, 2, "NAME CHILD", &ScriptHost::Control},
      {"click", 2, 2, "NAME CHILD", &ScriptHost::Click},
      {"watch", 3, 3, "NAME CHILD FIELD", &ScriptHost::Watch},
      {"select", 3, kAny, "NAME CHILD INDEX ...", &ScriptHost::Select},
      {"type", 3, 3, "NAME CHILD TEXT", &ScriptHost::Type},
      {"leave", 2, 2, "NAME CHILD", &ScriptHost::Leave},
      {"press", 3, 3, "NAME CHILD BUTTON", &ScriptHost::Press},
      {"drop", 3, 3, "NAME CHILD TEXT", &ScriptHost::Drop},
      {"menu", 2, 2, "NAME ITEM", &ScriptHost::ChooseMenu},
      {"pixel", 4, 4, "NAME CHILD X Y", &ScriptHost::Pixel},
      {"picture", 3, 3, "NAME CHILD FILE", &ScriptHost::Picture},
      {"close", 1, 1, "WINDOW", &ScriptHost::Close},
      {"run", 1, 1, "MS", &ScriptHost::RunFor},
      {"until", 1, 2, "EVENT [MS]", &ScriptHost::Until},
      {"on", 2, 2, "EVENT LINE", &ScriptHost::On},
      {"answer", 2, 2, "KIND VALUE", &ScriptHost::Answer},
      {"clipboard", 0, 1, "[FILE]", &ScriptHost::ShowClipboard},
      {"surface", 3, 3, "NAME WIDTH HEIGHT", &ScriptHost::MakeSurface},
      {"registry", 2, 2, "KEY NAME", &ScriptHost::ReadRegistry},
      {"print", 1, 1, "TEXT", &ScriptHost::PrintText},
  };
  return kCommands;
}

const ScriptHost::Command& ScriptHost::FindCommand(const std::string& name) {
  for (const Command& command : Commands()) {
    if (command.name == name) return command;
  }
  throw ScriptError("there is no command '" + name + "'");
}

ScriptHost::ScriptHost(std::istream& input, std::ostream& output)
    : lines_(input), output_(output), dialogs_([this](const Json& line) { Print(line); }), server_(dialogs_) {
  for (const EventEntry& event : video_server_push_interface::Events()) events_.emplace(event.name);
}

ScriptHost::~ScriptHost() {
  silent_ = true;
  controls_.clear();
  // What waits inside an event ends as well, while everything that it goes by is there.
  for (Wait& wait : waits_) wait.over.Complete();
  for (int round = 0; round < kRoundsToEnd; ++round) Loop().Queue().HandleDue();
}

bool ScriptHost::Run() {
  for (auto line = lines_.Next(); line && output_; line = lines_.Next()) CarryOut(*line);
  return !wrong_;
}

// ---- Lines ----------------------------------------------------------------------------------------------------------

void ScriptHost::CarryOut(const ScriptLine& line) {
  std::vector<std::string> words;
  try {
    words = SplitWords(line.text);
  } catch (const ScriptError& error) {
    return PrintError(error.what(), line.number);
  }
  if (words.empty()) return;

  bool done = false;
  Loop().RunHandler([&] {
    Execute(words, line.number);
    done = true;
  });
  while (!done) {
    if (OpenWindow* const window = UnservedWindow()) {
      Serve(*window);
    } else {
      Loop().Queue().HandleNext();
    }
  }
}

void ScriptHost::Execute(const std::vector<std::string>& words, int line) {
  line_ = line;
  try {
    const Command& command = FindCommand(words.front());
    const Words arguments = Words(words).subspan(1);
    if (arguments.size() < command.least || arguments.size() > command.most) {
      throw ScriptError(std::string(command.name) + " takes " + std::string(command.arguments));
    }
    (this->*command.carry_out)(arguments);
  } catch (const std::exception& error) {
    PrintError(error.what(), line);
  }
}

void ScriptHost::Serve(OpenWindow& window) {
  window.served = true;
  Window* const served = window.window;
  while (IsOpen(served)) {
    if (const auto line = lines_.Next()) {
      CarryOut(*line);
    } else {
      return served->Close();
    }
  }
}

ScriptHost::OpenWindow* ScriptHost::UnservedWindow() {
  for (OpenWindow& window : windows_) {
    if (!window.served) return &window;
  }
  return nullptr;
}

bool ScriptHost::IsOpen(const Window* window) const {
  return std::any_of(windows_.begin(), windows_.end(), [&](const OpenWindow& open) { return open.window == window; });
}

void ScriptHost::Print(const Json& line) {
  if (!silent_) output_ << ToLine(line) << std::endl;  // at once: others read along
}

void ScriptHost::PrintError(const std::string& text, int line) {
  wrong_ = true;
  Print({{"error", text}, {"line", line}});
}

// ---- What the controls do -------------------------------------------------------------------------------------------

void ScriptHost::Adopt(const std::string& name, const HostControl& control) {
  const Subject subject{control.Viewer(), control.Player(), nullptr};
  if (subject.viewer != nullptr) AdoptViewer(*subject.viewer, name);
  if (VideoServerPush* const inner = subject.Inner("VS")) AdoptInnerViewer(*inner, name + ".VS");
  for (const auto& [window_name, window] : subject.Windows()) AdoptWindow(*window, window_name);
}

void ScriptHost::AdoptViewer(VideoServerPush& viewer, const std::string& name) {
  viewer.MainMenu.PoppedUp.Listen([this, name, &menu = viewer.MainMenu] {
    Json items = Json::array();
    for (const MenuItem* item : menu.Items) {
      items.push_back({{"caption", item->Caption.Get()}, {"checked", item->Checked.Get()}});
    }
    Print({{"menu", name}, {"items", std::move(items)}});
  });
}

void ScriptHost::AdoptInnerViewer(VideoServerPush& viewer, const std::string& name) {
  AdoptViewer(viewer, name);
  ListenToAll(viewer.Events, [this, name](const EventEntry& event, std::span<const EventArgument> arguments) {
    EventCame(EventToJson(event, name, arguments));
  });
}

void ScriptHost::AdoptWindow(Window& window, const std::string& name) {
  const Subject subject{nullptr, nullptr, &window};
  subject.ListenToViewers([this, name](const std::string& viewer_name, VideoServerPush& viewer) {
    AdoptInnerViewer(viewer, name + "." + viewer_name);
  });
  window.Opened.Listen([this, &window, name] { WindowOpened(window, name); });
  window.Closed.Listen([this, &window, name] {
    std::erase_if(windows_, [&](const OpenWindow& open) { return open.window == &window; });
    Print({{"closed", name}});
  });
}

void ScriptHost::WindowOpened(Window& window, const std::string& name) {
  windows_.push_back({&window, name});
  Print({{"window", name}, {"caption", window.Caption.Get()}});
  if (window.FullScreen) {
    const Screen& screen = server_.GetPlatform().screen;
    window.Width = static_cast<float>(screen.Width() * screen.TwipsPerPixelX());
    window.Height = static_cast<float>(screen.Height() * screen.TwipsPerPixelY());
  }
  if (const auto resized = window.OnResize) resized();
}

void ScriptHost::EventCame(const Json& line) {
  const std::string event = line["event"];
  Print(line);
  for (Wait& wait : waits_) wait.came = wait.came || wait.event == event;

  std::list<Reaction> due;
  for (auto next = reactions_.begin(); next != reactions_.end();) {
    const auto reaction = next++;
    if (reaction->event == event) due.splice(due.end(), reactions_, reaction);
  }
  for (const Reaction& reaction : due) Execute(reaction.words, reaction.line);

  // Now only: who waits for an event goes on when the host is through with it.
  for (Wait& wait : waits_) {
    if (wait.came && wait.event == event) wait.over.Complete();
  }
}

// ---- Names ----------------------------------------------------------------------------------------------------------

Subject ScriptHost::Find(const std::string& name) {
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

Child ScriptHost::FindChild(const std::string& name, const std::string& child) {
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

HostControl& ScriptHost::FindControl(const std::string& name) {
  const auto found = controls_.find(name);
  if (found == controls_.end()) throw ScriptError("there is no control '" + name + "'");
  return *found->second;
}

LateBound ScriptHost::MembersOf(const std::string& name) {
  if (const auto found = controls_.find(name); found != controls_.end()) return found->second->Members();
  const Subject subject = Find(name);
  if (subject.viewer == nullptr) throw ScriptError(name + " has no members");
  return LateBound(server_.DispatchOf(*subject.viewer));
}

const Surface& ScriptHost::FindPicture(const std::string& name, const std::string& child) {
  const auto surface = surfaces_.find(name);
  if (surface == surfaces_.end()) return SurfaceOf(FindChild(name, child));
  if (child != kItself) throw ScriptError(name + " is a surface, whose picture is '" + name + " .'");
  return surface->second->surface;
}

void ScriptHost::CheckEvent(const std::string& event) const {
  if (!events_.contains(event)) throw ScriptError("there is no event '" + event + "'");
}

void ScriptHost::CheckNew(const std::string& name) const {
  if (name.empty() || name.find('.') != std::string::npos) throw ScriptError("a name is not empty and has no dot");
  if (controls_.contains(name) || surfaces_.contains(name)) throw ScriptError("there is a '" + name + "' already");
}

// ---- The commands: controls -----------------------------------------------------------------------------------------

void ScriptHost::Create(Words words) {
  const std::string& name = words[0];
  CheckNew(name);
  const auto told = [this, name](const std::string& event, Json arguments) {
    EventCame({{"event", event}, {"from", name}, {"args", std::move(arguments)}});
  };
  const auto made = controls_.emplace(name, std::make_unique<HostControl>(server_, words[1], told)).first;
  Adopt(name, *made->second);
}

void ScriptHost::Place(Words words) {
  const float width = ParseSingle(words[1], "the width");
  const float height = ParseSingle(words[2], "the height");
  if (width < 0 || height < 0) throw ScriptError("a size is not negative");
  FindControl(words[0]).Place(width, height);
}

void ScriptHost::Load(Words words) {
  std::vector<std::pair<std::string, std::string>> properties;
  for (const std::string& word : words.subspan(1)) {
    const std::size_t equals = word.find('=');
    if (equals == std::string::npos || equals == 0) throw ScriptError("'" + word + "' is not KEY=VALUE");
    properties.emplace_back(word.substr(0, equals), word.substr(equals + 1));
  }
  FindControl(words[0]).Load(properties);
}

void ScriptHost::Get(Words words) {
  Json value = MembersOf(words[0]).Get(words[1]);
  Print({{"get", words[0] + "." + words[1]}, {"value", std::move(value)}});
}

void ScriptHost::Set(Words words) {
  Json value = MembersOf(words[0]).Put(words[1], words[2]);
  Print({{"set", words[0] + "." + words[1]}, {"value", std::move(value)}});
}

void ScriptHost::Call(Words words) {
  const auto device_context = [this](const std::string& name) -> std::optional<std::int32_t> {
    const auto found = surfaces_.find(name);
    if (found == surfaces_.end()) return std::nullopt;
    return found->second->device_context;
  };
  Json result =
      MembersOf(words[0]).Call(words[1], std::vector<std::string>(words.begin() + 2, words.end()), device_context);
  Print({{"call", words[0] + "." + words[1]}, {"result", std::move(result)}});
}

void ScriptHost::Members(Words words) {
  const auto members = HostControl::Factory(server_, words[0]).As<server::IMemberList>();
  ForEachMember(*members.Get(), [this](const server::MemberInfo& member) {
    const char* const kind = member.kind == server::kPropertyMember ? "property"
                             : member.kind == server::kMethodMember ? "method"
                                                                    : "event";
    Print({{"member", member.name}, {"kind", kind}, {"id", static_cast<std::uint32_t>(member.id)}});
  });
}

void ScriptHost::Hide(Words words) {
  FindControl(words[0]).Hide();
}

void ScriptHost::Destroy(Words words) {
  FindControl(words[0]);
  // The name is free at once, whatever the control's end sets going.
  const auto released = controls_.extract(words[0]);
}

// ---- The commands: child controls and windows -----------------------------------------------------------------------

void ScriptHost::Control(Words words) {
  Json line{{"control", words[0] + "." + words[1]}};
  const Subject subject = Find(words[0]);
  if (words[1] == kItself) {
    subject.Describe(line);
  } else if (ChildControl* const place = subject.PlaceOf(words[1])) {
    line["kind"] = "VideoServerPush";
    DescribePlace(*place, line);
  } else if (VideoServerPush* const inner = subject.Inner(words[1])) {
    Subject{inner, nullptr, nullptr}.Describe(line);
  } else {
    const Child child = FindChild(words[0], words[1]);
    line["kind"] = KindOf(child.control);
    DescribeChild(child.control, line);
  }
  Print(line);
}

void ScriptHost::Watch(Words words) {
  const std::string path = words[0] + "." + words[1] + "." + words[2];
  const auto changed = [this, path](Json value) { Print({{"changed", path}, {"value", std::move(value)}}); };
  const Subject subject = Find(words[0]);
  ChildControl* const place = subject.PlaceOf(words[1]);
  const bool watched = words[1] == kItself ? subject.Watch(words[2], changed)
                       : place != nullptr  ? WatchPlace(*place, words[2], changed)
                                           : WatchChild(FindChild(words[0], words[1]).control, words[2], changed);
  if (!watched) throw ScriptError(words[0] + "." + words[1] + " has no field '" + words[2] + "' that changes");
}

void ScriptHost::Click(Words words) {
  const Child child = FindChild(words[0], words[1]);
  Loop().RunToEnd([&] { ClickChild(child); });
}

void ScriptHost::Select(Words words) {
  const Child child = FindChild(words[0], words[1]);
  std::vector<int> indices;
  for (const std::string& word : words.subspan(2)) indices.push_back(ParseWhole<int>(word, "the item's index", 0));
  Loop().RunToEnd([&] { SelectItems(child, indices); });
}

void ScriptHost::Type(Words words) {
  const Child child = FindChild(words[0], words[1]);
  Loop().RunToEnd([&] { TypeText(child, words[2]); });
}

void ScriptHost::Leave(Words words) {
  const Child child = FindChild(words[0], words[1]);
  Loop().RunToEnd([&] { LeaveChild(child); });
}

void ScriptHost::Press(Words words) {
  const auto button = ParseWhole<std::int16_t>(words[2], "the mouse button (1 left, 2 right, 4 middle)", 1, 4);
  if (button == 3) throw ScriptError("a press is of one mouse button: 1 left, 2 right, 4 middle");
  const Child child = FindChild(words[0], words[1]);
  Loop().RunToEnd([&] { PressMouse(child, button); });
}

void ScriptHost::Drop(Words words) {
  const Child child = FindChild(words[0], words[1]);
  Loop().RunToEnd([&] { DropText(child, words[2]); });
}

void ScriptHost::ChooseMenu(Words words) {
  const Child item = FindChild(words[0], words[1]);
  Loop().RunToEnd([&] { ChooseMenuItem(item); });
}

void ScriptHost::Pixel(Words words) {
  const int x = ParseWhole<int>(words[2], "x");
  const int y = ParseWhole<int>(words[3], "y");
  const Color color = FindPicture(words[0], words[1]).Point(x, y);
  Print({{"pixel", words[0] + "." + words[1]}, {"x", x}, {"y", y}, {"value", color}});
}

void ScriptHost::Picture(Words words) {
  const Surface& picture = FindPicture(words[0], words[1]);
  if (!surfaces_.contains(words[0]) && !IsDrawn(FindChild(words[0], words[1]))) {
    throw ScriptError("nothing was drawn on " + words[0] + "." + words[1] + " yet");
  }
  Write(picture, words[2]);
}

void ScriptHost::Write(const Surface& picture, const std::string& file) {
  const PictureFormat format = FormatOf(file);
  if (format != PictureFormat::kBmp && format != PictureFormat::kPng) {
    throw ScriptError("a picture's file name ends in .bmp or .png, '" + file + "' does not");
  }
  if (const std::string why = WritePicture(file, picture, server_.GetPlatform().pictures); !why.empty()) {
    throw ScriptError("cannot write " + file + ": " + why);
  }
}

void ScriptHost::Close(Words words) {
  const auto found =
      std::find_if(windows_.begin(), windows_.end(), [&](const OpenWindow& open) { return open.name == words[0]; });
  if (found == windows_.end()) throw ScriptError("no window '" + words[0] + "' is open");
  Window& window = *found->window;
  Loop().RunToEnd([&] { window.Close(); });
}

// ---- The commands: time, events, answers ----------------------------------------------------------------------------

void ScriptHost::RunFor(Words words) {
  WaitFor("", ParseTime(words[0]));
}

void ScriptHost::Until(Words words) {
  CheckEvent(words[0]);
  const bool came = WaitFor(words[0], words.size() > 1 ? ParseTime(words[1]) : milliseconds(kUntilDefault));
  if (!came) Print({{"timeout", words[0]}});
}

bool ScriptHost::WaitFor(const std::string& event, milliseconds limit) {
  const auto wait = waits_.emplace(waits_.end());
  wait->event = event;
  const auto timer = Loop().Queue().ArmTimer(limit, [wait] { wait->over.Complete(); });
  Loop().Wait(wait->over);
  Loop().Queue().CancelTimer(timer);
  const bool came = wait->came;
  waits_.erase(wait);
  return came;
}

void ScriptHost::On(Words words) {
  CheckEvent(words[0]);
  std::vector<std::string> reaction = SplitWords(words[1]);
  if (reaction.empty()) throw ScriptError("there is no command in '" + words[1] + "'");
  FindCommand(reaction.front());
  reactions_.push_back({words[0], std::move(reaction), line_});
}

void ScriptHost::Answer(Words words) {
  dialogs_.Answer(words[0], words[1], server_.GetPlatform().avi_files.Codecs());
}

void ScriptHost::ShowClipboard(Words words) {
  const Surface picture = server_.GetPlatform().clipboard.Picture();
  if (!words.empty() && !picture.Empty()) Write(picture, words[0]);
  Print({{"clipboard", picture.Empty() ? Json() : SizeToJson(picture.Width(), picture.Height())}});
}

void ScriptHost::MakeSurface(Words words) {
  CheckNew(words[0]);
  const int width = ParseWhole<int>(words[1], "the width in pixels", 1, Surface::kMaxSide);
  const int height = ParseWhole<int>(words[2], "the height in pixels", 1, Surface::kMaxSide);
  if (std::int64_t{width} * height > Surface::kMaxPixels) throw ScriptError("a surface has at most 64 megapixels");
  surfaces_.emplace(words[0], std::make_unique<HostSurface>(server_.GetPlatform().device_contexts, width, height));
}

void ScriptHost::ReadRegistry(Words words) {
  Json text;
  const auto values = server_.GetPlatform().registry.Values(Registry::Hive::kLocalMachine, words[0]);
  for (const Registry::Value& value : values.value_or(std::vector<Registry::Value>())) {
    if (value.name == words[1]) text = value.text;
  }
  Print({{"registry", words[1]}, {"value", std::move(text)}});
}

void ScriptHost::PrintText(Words words) {
  Print({{"print", words[0]}});
}

}  // namespace orbelcast
