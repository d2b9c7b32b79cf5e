#include "remote/children.h"

#include <algorithm>
#include <type_traits>
#include <utility>
#include <variant>

#include "remote/script_error.h"

namespace orbelcast {

namespace {

template <typename Value>
Json ValueOf(const Property<Value>& property) {
  return property.Get();
}
Json ValueOf(const Property<float>& property) {
  return NumberToJson(property.Get());
}

template <typename Value>
Field FieldOf(const char* name, Property<Value>& property) {
  return {name, [&property] { return ValueOf(property); },
          [&property](const Field::Changed& changed) {
            property.Changed.Listen([&property, changed](const Value&) { changed(ValueOf(property)); });
          }};
}

/// A list's texts, and the selected one, as fields like the others.
Field ListOf(ItemList& list) {
  return {
      "List", [&list] { return list.List(); },
      [&list](const Field::Changed& changed) { list.ListChanged.Listen([&list, changed] { changed(list.List()); }); }};
}
Field ListIndexOf(ItemList& list) {
  return {"ListIndex", [&list] { return list.ListIndex(); },
          [&list](const Field::Changed& changed) {
            list.ListIndexChanged.Listen([changed](int index) { changed(index); });
          }};
}

/// The fields that a control of this kind has, in the order in which they are told.
template <typename Control>
std::vector<Field> FieldsOfKind(Control& control) {
  std::vector<Field> fields;
  if constexpr (requires { control.Caption; }) fields.push_back(FieldOf("Caption", control.Caption));
  if constexpr (requires { control.Text; }) fields.push_back(FieldOf("Text", control.Text));
  if constexpr (requires { control.Visible; }) fields.push_back(FieldOf("Visible", control.Visible));
  if constexpr (requires { control.Enabled; }) fields.push_back(FieldOf("Enabled", control.Enabled));
  if constexpr (requires { control.Left; }) {
    fields.push_back(FieldOf("Left", control.Left));
    fields.push_back(FieldOf("Top", control.Top));
    fields.push_back(FieldOf("Width", control.Width));
    fields.push_back(FieldOf("Height", control.Height));
    fields.push_back(FieldOf("ToolTipText", control.ToolTipText));
    fields.push_back(FieldOf("Tag", control.Tag));
  }
  if constexpr (requires { control.Interval; }) fields.push_back(FieldOf("Interval", control.Interval));
  if constexpr (requires { control.Checked; }) fields.push_back(FieldOf("Checked", control.Checked));
  if constexpr (std::is_base_of_v<ItemList, Control>) {
    fields.push_back(ListOf(control));
    fields.push_back(ListIndexOf(control));
  }
  return fields;
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
  const auto found = std::ranges::find(children, name, &NamedChild::name);
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

std::vector<Field> FieldsOf(const ChildReference& child) {
  return std::visit([](auto* control) { return FieldsOfKind(*control); }, child);
}

std::vector<Field> FieldsOf(ChildControl& place) {
  return FieldsOfKind(place);
}

void DescribeFields(const std::vector<Field>& fields, Json& line) {
  for (const Field& field : fields) line[field.name] = field.value();
}

bool WatchField(const std::vector<Field>& fields, std::string_view name, const Field::Changed& changed) {
  const auto found = std::ranges::find(fields, name, &Field::name);
  if (found == fields.end()) return false;
  found->watch(changed);
  return true;
}

void WatchFields(const std::vector<Field>& fields, const std::function<void(const char* field, Json value)>& changed) {
  for (const Field& field : fields) {
    field.watch([changed, name = field.name](Json value) { changed(name, std::move(value)); });
  }
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
