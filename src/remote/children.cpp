#include "remote/children.h"

#include <algorithm>
#include <type_traits>
#include <variant>

#include "remote/script_error.h"

namespace orbelcast {

namespace {

/// A list's texts, and the selected one, as fields like the others.
struct ListField {
  ItemList& list;
  Json Get() const { return list.List(); }
};
struct ListIndexField {
  ItemList& list;
  Json Get() const { return list.ListIndex(); }
};

Json ValueOf(const ListField& field) {
  return field.Get();
}
Json ValueOf(const ListIndexField& field) {
  return field.Get();
}
Json ValueOf(const Property<float>& field) {
  return NumberToJson(field.Get());
}
template <typename Value>
Json ValueOf(const Property<Value>& field) {
  return field.Get();
}

/// Calls `visit(name, field)` for each field of the control, in the order in which they are told.
template <typename Control, typename Visit>
void VisitFields(Control& control, Visit visit) {
  if constexpr (requires { control.Caption; }) visit("Caption", control.Caption);
  if constexpr (requires { control.Text; }) visit("Text", control.Text);
  if constexpr (requires { control.Visible; }) visit("Visible", control.Visible);
  if constexpr (requires { control.Enabled; }) visit("Enabled", control.Enabled);
  if constexpr (requires { control.Left; }) {
    visit("Left", control.Left);
    visit("Top", control.Top);
    visit("Width", control.Width);
    visit("Height", control.Height);
    visit("ToolTipText", control.ToolTipText);
    visit("Tag", control.Tag);
  }
  if constexpr (requires { control.Interval; }) visit("Interval", control.Interval);
  if constexpr (requires { control.Checked; }) visit("Checked", control.Checked);
  if constexpr (std::is_base_of_v<ItemList, Control>) {
    visit("List", ListField{control});
    visit("ListIndex", ListIndexField{control});
  }
}

using Changed = std::function<void(Json value)>;

void Listen(const ListField& field, const Changed& changed) {
  field.list.ListChanged.Listen([&list = field.list, changed] { changed(list.List()); });
}
void Listen(const ListIndexField& field, const Changed& changed) {
  field.list.ListIndexChanged.Listen([changed](int index) { changed(index); });
}
template <typename Value>
void Listen(Property<Value>& field, const Changed& changed) {
  field.Changed.Listen([&field, changed](const Value&) { changed(ValueOf(field)); });
}

struct KindName {
  std::string_view operator()(const Label*) const { return "Label"; }
  std::string_view operator()(const Frame*) const { return "Frame"; }
  std::string_view operator()(const PictureBox*) const { return "PictureBox"; }
  std::string_view operator()(const Image*) const { return "Image"; }
  std::string_view operator()(const Timer*) const { return "Timer"; }
  std::string_view operator()(const MenuItem*) const { return "MenuItem"; }
  std::string_view operator()(const Menu*) const { return "Menu"; }
  std::string_view operator()(const Button*) const { return "Button"; }
  std::string_view operator()(const ComboBox*) const { return "ComboBox"; }
  std::string_view operator()(const ListBox*) const { return "ListBox"; }
  std::string_view operator()(const TextBox*) const { return "TextBox"; }
  std::string_view operator()(const Window*) const { return "Window"; }
};

/// The child as one of the kinds, the first that it is; null where it is none.
template <typename Kind>
Kind* As(const NamedChild& child) {
  return std::visit(
      [](auto* control) -> Kind* {
        if constexpr (std::is_base_of_v<Kind, std::remove_pointer_t<decltype(control)>>) {
          return control;
        } else {
          return nullptr;
        }
      },
      child.control);
}

const ChildControl* AsChildControl(const NamedChild& child) {
  return As<ChildControl>(child);
}

template <typename Kind>
Kind& Expect(const Child& child, const char* kind) {
  Kind* const control = As<Kind>(child);
  if (control == nullptr) {
    throw ScriptError(child.name + " is a " + std::string(KindOf(child.control)) + ", no " + kind);
  }
  return *control;
}

/// A child that the mouse and the keyboard can reach.
template <typename Kind>
Kind& Reach(const Child& child, const char* kind) {
  Kind& control = Expect<Kind>(child, kind);
  if (child.hidden) throw ScriptError(child.name + " is hidden");
  if (!control.Enabled) throw ScriptError(child.name + " is disabled");
  return control;
}

/// Calls what a control left for its front end, if it left anything. A copy: the handling may end the control.
template <typename Handler, typename... Args>
void Call(const Handler& handler, Args&&... args) {
  if (const auto copy = handler) copy(std::forward<Args>(args)...);
}

void SelectExactly(ListBox& list, const std::vector<int>& indices) {
  for (int item = 0; item < list.ListCount(); ++item) {
    list.Selected(item, std::find(indices.begin(), indices.end(), item) != indices.end());
  }
}

}  // namespace

Child FindChild(const std::vector<NamedChild>& children, std::string_view name, const std::string& path) {
  const auto found =
      std::find_if(children.begin(), children.end(), [&](const NamedChild& each) { return each.name == name; });
  if (found == children.end()) throw ScriptError("there is no child control '" + path + "'");
  Child child{*found};
  child.name = path;
  const ChildControl* visited = AsChildControl(*found);
  child.hidden = visited != nullptr && !visited->Visible;
  // Its container may have one itself.
  for (const ChildControl* outer = found->inside; outer != nullptr && !child.hidden;) {
    child.hidden = !outer->Visible;
    const auto next = std::find_if(children.begin(), children.end(),
                                   [&](const NamedChild& each) { return AsChildControl(each) == outer; });
    outer = next != children.end() ? next->inside : nullptr;
  }
  return child;
}

std::string_view KindOf(const ChildReference& child) {
  return std::visit(KindName(), child);
}

void DescribeChild(const ChildReference& child, Json& line) {
  std::visit(
      [&line](auto* control) {
        VisitFields(*control, [&line](const char* name, const auto& field) { line[name] = ValueOf(field); });
      },
      child);
}

void DescribePlace(ChildControl& place, Json& line) {
  VisitFields(place, [&line](const char* name, const auto& field) { line[name] = ValueOf(field); });
}

bool WatchPlace(ChildControl& place, std::string_view field, Changed changed) {
  bool found = false;
  VisitFields(place, [&](std::string_view name, auto&& candidate) {
    if (name != field) return;
    Listen(candidate, changed);
    found = true;
  });
  return found;
}

void WatchFields(const ChildReference& child, const FieldChanged& changed) {
  std::visit(
      [&](auto* control) {
        VisitFields(*control, [&](const char* name, auto&& field) {
          Listen(field, [changed, name](Json value) { changed(name, std::move(value)); });
        });
      },
      child);
}

void WatchPlaceFields(ChildControl& place, const FieldChanged& changed) {
  VisitFields(place, [&](const char* name, auto&& field) {
    Listen(field, [changed, name](Json value) { changed(name, std::move(value)); });
  });
}

bool WatchChild(const ChildReference& child, std::string_view field, Changed changed) {
  bool found = false;
  std::visit(
      [&](auto* control) {
        VisitFields(*control, [&](std::string_view name, auto&& candidate) {
          if (name != field) return;
          Listen(candidate, changed);
          found = true;
        });
      },
      child);
  return found;
}

void ClickChild(const Child& child) {
  Call(Reach<Button>(child, "button").OnClick);
}

void SelectItems(const Child& child, const std::vector<int>& indices) {
  auto& list = Reach<ItemList>(child, "list");
  for (const int index : indices) {
    if (index < 0 || index >= list.ListCount()) {
      throw ScriptError(child.name + " has no item " + std::to_string(index) + "; it has " +
                        std::to_string(list.ListCount()) + ", counted from 0");
    }
  }
  auto* const box = As<ListBox>(child);
  if (box != nullptr && box->MultiSelect) return SelectExactly(*box, indices);
  if (indices.size() != 1) throw ScriptError(child.name + " allows one selected item");
  list.Choose(indices.front());
}

void TypeText(const Child& child, const std::string& text) {
  Reach<TextBox>(child, "text box").Type(text);
}

void LeaveChild(const Child& child) {
  Call(Reach<TextBox>(child, "text box").OnLostFocus);
}

void PressMouse(const Child& child, std::int16_t button) {
  Call(Reach<ChildControl>(child, "control to press on").OnMouseDown, button);
}

void DropText(const Child& child, const std::string& text) {
  static_cast<void>(Reach<ChildControl>(child, "control to drop on"));
  Drop drop;
  drop.data.formats.emplace_back("text/plain", text);
  if (auto* const picture = As<PictureBox>(child)) return Call(picture->OnDrop, drop);
  if (auto* const image = As<Image>(child)) return Call(image->OnDrop, drop);
  throw ScriptError(child.name + " takes no drop");
}

void ChooseMenuItem(const Child& child) {
  auto& item = Expect<MenuItem>(child, "menu item");
  if (item.Caption.Get() == "-") throw ScriptError(child.name + " is a separator");
  if (!item.Enabled) throw ScriptError(child.name + " is disabled");
  Call(item.OnClick);
}

bool IsDrawn(const Child& child) {
  auto* const picture = As<PictureBox>(child);
  return picture == nullptr || picture->Drawn();
}

const Surface& SurfaceOf(const Child& child) {
  if (auto* const picture = As<PictureBox>(child)) return picture->Image();
  if (auto* const image = As<Image>(child)) return image->Picture();
  throw ScriptError(child.name + " is a " + std::string(KindOf(child.control)) + ", which has no picture");
}

}  // namespace orbelcast
