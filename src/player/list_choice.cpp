#include "player/list_choice.h"

#include <utility>

namespace orbelcast {

ListChoice::ListChoice(ItemList& list, PlayerLife& life, std::function<void()> handler) : list_(list) {
  list.OnClick = [this, &life, handler = std::move(handler)] {
    if (std::exchange(selecting_, false)) {
      handler();
    } else {
      life.Start(handler);
    }
  };
}

void ListChoice::Select(int index) {
  selecting_ = true;
  list_.ListIndex(index);
  selecting_ = false;
}

}  // namespace orbelcast
