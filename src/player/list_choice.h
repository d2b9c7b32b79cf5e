#pragma once

#include <functional>

#include "player/player_life.h"
#include "toolkit/controls.h"

namespace orbelcast {

/// The click handling of a list. A user's choice starts it as a handler of its own; an item that code selects is
/// handled where the code is.
class ListChoice {
 public:
  /// `list` and `life` outlive this object.
  ListChoice(ItemList& list, PlayerLife& life, std::function<void()> handler);
  ListChoice(const ListChoice&) = delete;
  ListChoice& operator=(const ListChoice&) = delete;

  /// Selects an item from code; its handling has ended when this returns. Nothing where there is no such item.
  void Select(int index);

 private:
  ItemList& list_;
  bool selecting_ = false;
};

}  // namespace orbelcast
