// The commands of a session's lines.

#include <algorithm>
#include <chrono>
#include <limits>
#include <utility>

#include "remote/children.h"
#include "remote/numbers.h"
#include "remote/script_error.h"
#include "remote/session.h"
#include "remote/variant_json.h"
#include "remote/words.h"
#include "toolkit/twips.h"
#include "viewer/video_server_push.h"

namespace orbelcast {

namespace {

using std::chrono::milliseconds;

/// Milliseconds that `until` waits where the script does not say.
constexpr int kUntilDefault = 5000;

milliseconds ParseTime(const std::string& word) {
  return milliseconds(ParseWhole<std::int32_t>(word, "the time in milliseconds", 0));
}

}  // namespace

std::span<const Session::Command> Session::Commands() {
  constexpr std::size_t kAny = std::numeric_limits<std::size_t>::max();
  static constexpr Command kCommands[] = {
      {"create", 2, 2, "NAME CLASS", &Session::Create, true},
      {"place", 3, 3, "NAME WIDTH HEIGHT", &Session::Place, true},
      {"load", 1, kAny, "NAME KEY=VALUE ...", &Session::Load, true},
      {"get", 2, 2, "NAME MEMBER", &Session::Get, true},
      {"set", 3, 3, "NAME MEMBER VALUE", &Session::Set, true},
      {"call", 2, kAny, "NAME METHOD [ARG ...]", &Session::Call, true},
      {"members", 1, 1, "CLASS", &Session::Members, true},
      {"hide", 1, 1, "NAME", &Session::Hide, true},
      {"destroy", 1, 1, "NAME", &Session::Destroy, true},
      {"control", 2, 2, "NAME CHILD", &Session::Control, true},
      {"click", 2, 2, "NAME CHILD", &Session::Click, true},
      {"watch", 3, 3, "NAME CHILD FIELD", &Session::Watch, false},
      {"select", 3, kAny, "NAME CHILD INDEX ...", &Session::Select, true},
      {"type", 3, 3, "NAME CHILD TEXT", &Session::Type, true},
      {"leave", 2, 2, "NAME CHILD", &Session::Leave, true},
      {"press", 3, 3, "NAME CHILD BUTTON", &Session::Press, true},
      {"drop", 3, 3, "NAME CHILD TEXT", &Session::Drop, true},
      {"menu", 2, 2, "NAME ITEM", &Session::ChooseMenu, true},
      {"pixel", 4, 4, "NAME CHILD X Y", &Session::Pixel, false},
      {"picture", 3, 3, "NAME CHILD FILE", &Session::Picture, false},
      {"close", 1, 1, "WINDOW", &Session::Close, true},
      {"run", 1, 1, "MS", &Session::RunFor, false},
      {"until", 1, 2, "EVENT [MS]", &Session::Until, false},
      {"on", 2, 2, "EVENT LINE", &Session::On, false},
      {"answer", 2, 2, "KIND VALUE", &Session::Answer, true},
      {"clipboard", 0, 1, "[FILE]", &Session::ShowClipboard, false},
      {"surface", 3, 3, "NAME WIDTH HEIGHT", &Session::MakeSurface, false},
      {"registry", 2, 2, "KEY NAME", &Session::ReadRegistry, false},
      {"print", 1, 1, "TEXT", &Session::PrintText, false},
      {"show", 1, 1, "NAME", &Session::Show, true},
      {"seen", 1, 1, "NAME", &Session::Seen, true},
      {"unseen", 1, 1, "NAME", &Session::Unseen, true},
      {"painted", 1, 1, "NAME.CHILD", &Session::Painted, true},
      {"keep", 3, 3, "KEY NAME TEXT", &Session::Keep, true},
  };
  return kCommands;
}

// ---- The commands: controls -----------------------------------------------------------------------------------------

void Session::Create(Words words) {
  const std::string& name = words[0];
  CheckNew(name);
  const auto told = [this, name](const std::string& event, Json arguments) {
    EventCame(event, {{"event", event}, {"from", name}, {"args", std::move(arguments)}});
  };
  const auto made = controls_.emplace(name, std::make_unique<HostControl>(server_, words[1], told)).first;
  Adopt(name, *made->second);
}

void Session::Place(Words words) {
  const float width = ParseSingle(words[1], "the width");
  const float height = ParseSingle(words[2], "the height");
  if (width < 0 || height < 0) throw ScriptError("a size is not negative");
  const auto scale = TwipsScale::Of(platform_.screen);
  if (IsShown() && (scale.PixelsX(width) > kMaxShownSide || scale.PixelsY(height) > kMaxShownSide)) {
    throw ScriptError("a side has at most 4096 pixels");
  }
  const Subject subject = controls_.contains(words[0]) ? Subject() : Find(words[0]);
  if (subject.window == nullptr) return FindControl(words[0]).Place(width, height);
  const auto told = subject.window->OnResize;
  if (!told) throw ScriptError(words[0] + " has a size of its own");
  subject.window->Width = width;
  subject.window->Height = height;
  told();
}

void Session::Load(Words words) {
  std::vector<std::pair<std::string, std::string>> properties;
  for (const std::string& word : words.subspan(1)) {
    const std::size_t equals = word.find('=');
    if (equals == std::string::npos || equals == 0) throw ScriptError("'" + word + "' is not KEY=VALUE");
    properties.emplace_back(word.substr(0, equals), word.substr(equals + 1));
  }
  FindControl(words[0]).Load(properties);
}

void Session::Get(Words words) {
  const int line = line_;
  Json value = MembersOf(words[0]).Get(words[1]);
  PrintAnswer({{"get", words[0] + "." + words[1]}, {"value", std::move(value)}}, line);
}

void Session::Set(Words words) {
  const int line = line_;
  Json value = MembersOf(words[0]).Put(words[1], words[2]);
  PrintAnswer({{"set", words[0] + "." + words[1]}, {"value", std::move(value)}}, line);
}

void Session::Call(Words words) {
  const auto device_context = [this](const std::string& name) -> std::optional<std::int32_t> {
    const auto found = surfaces_.find(name);
    if (found == surfaces_.end()) return std::nullopt;
    return found->second->device_context;
  };
  const int line = line_;
  Json result = MembersOf(words[0]).Call(words[1], std::vector<std::string>(words.begin() + 2, words.end()),
                                         device_context, Bulk());
  PrintAnswer({{"call", words[0] + "." + words[1]}, {"result", std::move(result)}}, line);
}

void Session::Members(Words words) {
  for (const server::MemberInfo& member : HostControl::FindClass(words[0]).members) {
    const char* const kind = member.kind == server::kPropertyMember ? "property"
                             : member.kind == server::kMethodMember ? "method"
                                                                    : "event";
    Print({{"member", member.name}, {"kind", kind}, {"id", static_cast<std::uint32_t>(member.id)}});
  }
}

void Session::Hide(Words words) {
  FindControl(words[0]).Hide();
}

void Session::Destroy(Words words) {
  FindControl(words[0]);
  showing_.End(words[0]);
  // The name is free at once, whatever the control's end sets going.
  const auto released = controls_.extract(words[0]);
}

// ---- The commands: child controls and windows -----------------------------------------------------------------------

void Session::Control(Words words) {
  Json line{{"control", words[0] + "." + words[1]}};
  const Subject subject = Find(words[0]);
  if (words[1] == kItself) {
    subject.Describe(line);
  } else if (ChildControl* const place = subject.PlaceOf(words[1])) {
    line["kind"] = "VideoServerPush";
    DescribeFields(FieldsOf(*place), line);
  } else if (VideoServerPush* const inner = subject.Inner(words[1])) {
    Subject{inner, nullptr, nullptr}.Describe(line);
  } else {
    const Child child = FindChild(words[0], words[1]);
    line["kind"] = KindOf(child.control);
    DescribeFields(FieldsOf(child.control), line);
  }
  Print(line);
}

void Session::Watch(Words words) {
  const std::string path = words[0] + "." + words[1] + "." + words[2];
  const auto changed = [this, path](Json value) { Print({{"changed", path}, {"value", std::move(value)}}); };
  const Subject subject = Find(words[0]);
  ChildControl* const place = subject.PlaceOf(words[1]);
  const bool watched = words[1] == kItself ? subject.Watch(words[2], changed)
                       : place != nullptr
                           ? WatchField(FieldsOf(*place), words[2], changed)
                           : WatchField(FieldsOf(FindChild(words[0], words[1]).control), words[2], changed);
  if (!watched) throw ScriptError(words[0] + "." + words[1] + " has no field '" + words[2] + "' that changes");
}

void Session::Click(Words words) {
  const Child child = FindChild(words[0], words[1]);
  Loop().RunToEnd([&] { ClickChild(child); });
}

void Session::Select(Words words) {
  const Child child = FindChild(words[0], words[1]);
  std::vector<int> indices;
  for (const std::string& word : words.subspan(2)) indices.push_back(ParseWhole<int>(word, "the item's index", 0));
  Loop().RunToEnd([&] { SelectItems(child, indices); });
}

void Session::Type(Words words) {
  const Child child = FindChild(words[0], words[1]);
  Loop().RunToEnd([&] { TypeText(child, words[2]); });
}

void Session::Leave(Words words) {
  const Child child = FindChild(words[0], words[1]);
  Loop().RunToEnd([&] { LeaveChild(child); });
}

void Session::Press(Words words) {
  const auto button = ParseWhole<std::int16_t>(words[2], "the mouse button (1 left, 2 right, 4 middle)", 1, 4);
  if (button == 3) throw ScriptError("a press is of one mouse button: 1 left, 2 right, 4 middle");
  const Child child = FindChild(words[0], words[1]);
  Loop().RunToEnd([&] { PressMouse(child, button); });
}

void Session::Drop(Words words) {
  const Child child = FindChild(words[0], words[1]);
  Loop().RunToEnd([&] { DropText(child, words[2]); });
}

void Session::ChooseMenu(Words words) {
  const Child item = FindChild(words[0], words[1]);
  Loop().RunToEnd([&] { ChooseMenuItem(item); });
}

void Session::Pixel(Words words) {
  const int x = ParseWhole<int>(words[2], "x");
  const int y = ParseWhole<int>(words[3], "y");
  const Color color = FindPicture(words[0], words[1]).Point(x, y);
  Print({{"pixel", words[0] + "." + words[1]}, {"x", x}, {"y", y}, {"value", color}});
}

void Session::Picture(Words words) {
  const Surface& picture = FindPicture(words[0], words[1]);
  if (!surfaces_.contains(words[0]) && !IsDrawn(FindChild(words[0], words[1]))) {
    throw ScriptError("nothing was drawn on " + words[0] + "." + words[1] + " yet");
  }
  front_end_.write_picture(picture, words[2]);
}

void Session::Close(Words words) {
  const auto found =
      std::find_if(windows_.begin(), windows_.end(), [&](const OpenWindow& open) { return open.name == words[0]; });
  if (found == windows_.end()) throw ScriptError("no window '" + words[0] + "' is open");
  Window& window = *found->window;
  Loop().RunToEnd([&] { window.Close(); });
}

// ---- The commands: time, events, answers ----------------------------------------------------------------------------

void Session::RunFor(Words words) {
  WaitFor("", ParseTime(words[0]));
}

void Session::Until(Words words) {
  CheckEvent(words[0]);
  const bool came = WaitFor(words[0], words.size() > 1 ? ParseTime(words[1]) : milliseconds(kUntilDefault));
  if (!came) Print({{"timeout", words[0]}});
}

bool Session::WaitFor(const std::string& event, milliseconds limit) {
  const auto wait = waits_.emplace(waits_.end());
  wait->event = event;
  const auto timer = Loop().Queue().ArmTimer(limit, [wait] { wait->over.Complete(); });
  Loop().Wait(wait->over);
  Loop().Queue().CancelTimer(timer);
  const bool came = wait->came;
  waits_.erase(wait);
  return came;
}

void Session::On(Words words) {
  CheckEvent(words[0]);
  std::vector<std::string> reaction = SplitWords(words[1]);
  if (reaction.empty()) throw ScriptError("there is no command in '" + words[1] + "'");
  FindCommand(reaction.front());
  reactions_.push_back({words[0], std::move(reaction), line_});
}

void Session::Answer(Words words) {
  dialogs_.Answer(words[0], words[1], platform_.avi_files.Codecs());
}

void Session::ShowClipboard(Words words) {
  const Surface picture = platform_.clipboard.Picture();
  if (!words.empty() && !picture.Empty()) front_end_.write_picture(picture, words[0]);
  Print({{"clipboard", picture.Empty() ? Json() : SizeToJson(picture.Width(), picture.Height())}});
}

void Session::MakeSurface(Words words) {
  CheckNew(words[0]);
  const int width = ParseWhole<int>(words[1], "the width in pixels", 1, Surface::kMaxSide);
  const int height = ParseWhole<int>(words[2], "the height in pixels", 1, Surface::kMaxSide);
  if (std::int64_t{width} * height > Surface::kMaxPixels) throw ScriptError("a surface has at most 64 megapixels");
  surfaces_.emplace(words[0], std::make_unique<HostSurface>(platform_.device_contexts, width, height));
}

void Session::ReadRegistry(Words words) {
  Json text;
  const auto values = platform_.registry.Values(Registry::Hive::kLocalMachine, words[0]);
  for (const Registry::Value& value : values.value_or(std::vector<Registry::Value>())) {
    if (value.name == words[1]) text = value.text;
  }
  Print({{"registry", words[1]}, {"value", std::move(text)}});
}

void Session::PrintText(Words words) {
  Print({{"print", words[0]}});
}

// ---- The commands: for a front end that shows the controls
// -----------------------------------------------------------

void Session::Show(Words words) {
  if (!IsShown()) throw ScriptError("nothing here can show a control");
  showing_.Begin(words[0], Find(words[0]));
}

void Session::Seen(Words words) {
  showing_.SetSeen(words[0], true);
}

void Session::Unseen(Words words) {
  showing_.SetSeen(words[0], false);
}

void Session::Painted(Words words) {
  showing_.Painted(words[0]);
}

void Session::Keep(Words words) {
  platform_.registry.SetValue(Registry::Hive::kLocalMachine, words[0], words[1], words[2]);
}

}  // namespace orbelcast
