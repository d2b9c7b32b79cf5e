#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "json/json.h"
#include "toolkit/controls.h"

namespace orbelcast {

class UserControl1;
class VideoServerPush;

/// The object of a name in a script, as far as child controls go: one of the three, the others being null.
struct Subject {
  VideoServerPush* viewer = nullptr;
  UserControl1* player = nullptr;
  Window* window = nullptr;

  explicit operator bool() const { return viewer != nullptr || player != nullptr || window != nullptr; }

  /// Its child controls by name.
  std::vector<NamedChild> Children() const;
  /// Adds its kind and its own fields to `line`.
  void Describe(Json& line) const;
  /// Calls `changed` at every change of one of its own fields. False where it has no such field that changes by itself.
  bool Watch(std::string_view field, const std::function<void(Json value)>& changed) const;
  /// The viewer inside of that name ("VS" in a player, "vs" in the full-screen window); null where there is none.
  VideoServerPush* Inner(std::string_view name) const;
  /// Calls `made` with the name and the viewer inside whenever the window makes one. Nothing else makes any.
  void ListenToViewers(const std::function<void(const std::string& name, VideoServerPush& viewer)>& made) const;
  /// The place of the viewer inside of that name; null where that is not to be told.
  ChildControl* PlaceOf(std::string_view name) const;
  /// The windows that it opens, by name.
  std::vector<std::pair<std::string, Window*>> Windows() const;
};

}  // namespace orbelcast
