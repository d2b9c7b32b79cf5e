#include "remote/showing.h"

#include <algorithm>
#include <utility>
#include <variant>

#include "player/user_control1.h"
#include "remote/children.h"
#include "viewer/video_server_push.h"

namespace orbelcast {

namespace {

/// Whether `path` names `outer` or something inside of it.
bool IsInside(std::string_view path, std::string_view outer) {
  return path.starts_with(outer) && (path.size() == outer.size() || path[outer.size()] == '.');
}

Json SelectionOf(const ListBox& list) {
  Json selected = Json::Array();
  for (int item = 0; item < list.ListCount(); ++item) {
    if (list.Selected(item)) selected.Append(item);
  }
  return selected;
}

/// The fields of a child that only who paints it needs; they are set before it is shown.
struct DescribeLook {
  Json& line;

  void operator()(const Label* label) const { line["Font"] = label->Font; }
  void operator()(const Button* button) const { line["Font"] = button->Font; }
  void operator()(const PictureBox* box) const { line["BackColor"] = box->BackColor.Get(); }
  void operator()(const ListBox* list) const {
    line["Font"] = list->Font;
    line["MultiSelect"] = list->MultiSelect;
    line["Selected"] = SelectionOf(*list);
  }
  void operator()(const TextBox* box) const {
    line["Font"] = box->Font;
    line["MultiLine"] = box->MultiLine;
    line["MaxLength"] = box->MaxLength;
  }
  void operator()(const Window* window) const { line["FullScreen"] = window->FullScreen; }
  template <typename Other>
  void operator()(const Other* /*control*/) const {}
};

const ChildControl* PlaceOf(const ChildReference& child) {
  return std::visit(
      [](auto* control) -> const ChildControl* {
        if constexpr (std::is_convertible_v<decltype(control), const ChildControl*>) return control;
        return nullptr;
      },
      child);
}

/// The path of the child that is `container`; `outer` where none is.
std::string PathOf(const ChildControl* container, const std::vector<NamedChild>& children, const std::string& outer) {
  for (const NamedChild& each : children) {
    if (container != nullptr && PlaceOf(each.control) == container) return outer + "." + each.name;
  }
  return outer;
}

}  // namespace

void Showing::Begin(const std::string& path, const Subject& subject) {
  Json line{{"show", path}};
  subject.Describe(line);
  if (subject.window != nullptr) DescribeLook{line}(subject.window);
  print_(std::move(line));
  const bool fresh = IsNew(path);
  if (fresh && subject.window != nullptr) Follow(path, subject.window);
  if (fresh && subject.player != nullptr) {
    subject.Watch("MousePointer", [this, path](Json value) { Tell(path, "MousePointer", std::move(value)); });
  }
  const std::vector<NamedChild> children = subject.Children();
  for (const NamedChild& child : children) ShowChild(path, child, PathOf(child.inside, children, path));
  for (const char* const name : {"VS", "vs"}) {
    if (auto* const viewer = subject.Inner(name)) ShowInner(path + "." + name, *viewer, subject.PlaceOf(name));
  }
  print_({{"shown", path}});
}

void Showing::End(std::string_view path) {
  std::erase_if(watched_, [&](const std::string& each) { return IsInside(each, path); });
  std::erase_if(journals_, [&](const auto& each) { return IsInside(each.first, path); });
}

void Showing::SetSeen(std::string_view path, bool seen) {
  for (const auto& [each, journal] : journals_) {
    if (IsInside(each, path)) journal->SetSeen(seen);
  }
}

void Showing::Painted(const std::string& path) {
  const auto found = journals_.find(path);
  if (found != journals_.end()) found->second->Painted();
}

bool Showing::AwaitsPainting() const {
  return std::ranges::any_of(journals_, [](const auto& each) { return each.second->AwaitsPainting(); });
}

std::vector<ShownDrawing> Showing::Take() {
  std::vector<ShownDrawing> drawings;
  for (const auto& [path, journal] : journals_) {
    for (Drawing& drawing : journal->Take()) drawings.push_back({path, std::move(drawing)});
  }
  return drawings;
}

void Showing::ShowInner(const std::string& path, VideoServerPush& viewer, ChildControl* place) {
  const Subject subject{&viewer, nullptr, nullptr};
  Json line{{"show", path}};
  subject.Describe(line);
  if (place != nullptr) DescribeFields(FieldsOf(*place), line);
  print_(std::move(line));
  if (IsNew(path) && place != nullptr) {
    WatchFields(FieldsOf(*place), [this, path](const char* field, Json value) { Tell(path, field, std::move(value)); });
  }
  const std::vector<NamedChild> children = subject.Children();
  for (const NamedChild& child : children) ShowChild(path, child, PathOf(child.inside, children, path));
}

void Showing::ShowChild(const std::string& outer, const NamedChild& child, const std::string& inside) {
  const bool painted = PlaceOf(child.control) != nullptr;
  if (!painted) return;  // timers and menus
  const std::string path = outer + "." + child.name;
  Json line{{"show", path}, {"inside", inside}, {"kind", KindOf(child.control)}};
  DescribeFields(FieldsOf(child.control), line);
  std::visit(DescribeLook{line}, child.control);
  print_(std::move(line));
  if (IsNew(path)) Follow(path, child.control);
}

void Showing::Tell(const std::string& path, const char* field, Json value) {
  if (watched_.contains(path)) print_({{"changed", path + "." + field}, {"value", std::move(value)}});
}

// The control lives as long as the listeners and the journal's look need it: what ends sooner is ended here, too.
void Showing::Follow(const std::string& path, const ChildReference& child) {
  WatchFields(FieldsOf(child), [this, path](const char* field, Json value) { Tell(path, field, std::move(value)); });
  if (auto* const list = std::get_if<ListBox*>(&child)) {
    (*list)->SelectionChanged.Listen([this, path, list = *list] { Tell(path, "Selected", SelectionOf(*list)); });
  } else if (auto* const box = std::get_if<PictureBox*>(&child)) {
    const auto journal = MakeJournal(path, [box = *box]() -> const Surface& { return box->Image(); });
    (*box)->Watch(journal);
    if ((*box)->Drawn()) journal->TakeAnew();
  } else if (auto* const image = std::get_if<Image*>(&child)) {
    const auto journal = MakeJournal(path, [image = *image]() -> const Surface& { return image->Picture(); });
    (*image)->PictureChanged.Listen([weak = std::weak_ptr(journal)] {
      if (const auto still = weak.lock()) still->TakeAnew();
    });
    journal->TakeAnew();
  } else if (auto* const button = std::get_if<Button*>(&child)) {
    if ((*button)->Picture().Empty()) return;
    MakeJournal(path, [button = *button]() -> const Surface& { return button->Picture(); })->TakeAnew();
  }
}

std::shared_ptr<DrawingJournal> Showing::MakeJournal(const std::string& path, std::function<const Surface&()> look) {
  auto journal = std::make_shared<DrawingJournal>(std::move(look), pictures_, news_);
  journals_[path] = journal;
  return journal;
}

}  // namespace orbelcast
