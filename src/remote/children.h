#pragma once

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

/// Adds the fields that the child has to `line`, by the names of the interface, sizes in twips.
void DescribeChild(const ChildReference& child, Json& line);

/// The same for a place, which is no control of its own.
void DescribePlace(ChildControl& place, Json& line);
bool WatchPlace(ChildControl& place, std::string_view field, std::function<void(Json value)> changed);

/// Calls `changed` with the field's name and its new value at every change of any field.
using FieldChanged = std::function<void(const char* field, Json value)>;
void WatchFields(const ChildReference& child, const FieldChanged& changed);
void WatchPlaceFields(ChildControl& place, const FieldChanged& changed);

/// Calls `changed` with the new value at every change of that field, as long as the child lives. False where the child
/// has no such field.
bool WatchChild(const ChildReference& child, std::string_view field, std::function<void(Json value)> changed);

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
