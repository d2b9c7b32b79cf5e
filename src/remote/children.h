#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "json/json.h"
#include "toolkit/controls.h"
#include "toolkit/surface.h"

namespace orbelcast {

/// A child control under the path that the script gave, and whether it or its container is hidden.
struct Child : NamedChild {
  bool hidden = false;
};

/// The child of that name among `children`, to be told as `path`. Throws ScriptError where there is none.
Child FindChild(const std::vector<NamedChild>& children, std::string_view name, const std::string& path);

/// The kind's name, such as "Label".
std::string_view KindOf(const ChildReference& child);

/// A field of a control, sizes in twips. Not to be used once the control has ended.
struct Field {
  using Changed = std::function<void(Json value)>;

  const char* name;  ///< The interface's, a literal.
  std::function<Json()> value;
  /// Has the new value told at every change.
  std::function<void(const Changed& changed)> watch;
};

/// The fields that the child has, in the order in which they are told.
std::vector<Field> FieldsOf(const ChildReference& child);
/// The same of a place, which is no control of its own.
std::vector<Field> FieldsOf(ChildControl& place);

/// Adds the fields with their values to `line`.
void DescribeFields(const std::vector<Field>& fields, Json& line);
/// Watches the field of that name; false where there is none.
bool WatchField(const std::vector<Field>& fields, std::string_view name, const Field::Changed& changed);
void WatchFields(const std::vector<Field>& fields, const std::function<void(const char* field, Json value)>& changed);

// A person's actions. Each throws ScriptError where a person could not do it: the child is of another kind, hidden
// (itself or its container) or disabled. `child` names it for the message.

void ClickChild(const Child& child);
/// Chooses these items: of a list that allows several, exactly these.
void SelectItems(const Child& child, const std::vector<int>& indices);
void TypeText(const Child& child, const std::string& text);
void LeaveChild(const Child& child);
void PressMouse(const Child& child, std::int16_t button);
void DropText(const Child& child, const std::string& text);
void ChooseMenuItem(const Child& child);

/// The drawing on a picture box, or the picture that an image shows. Throws ScriptError for other kinds.
const Surface& SurfaceOf(const Child& child);
/// False for a picture box that nothing was drawn on yet.
bool IsDrawn(const Child& child);

}  // namespace orbelcast
