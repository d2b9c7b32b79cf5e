#include "toolkit/controls.h"

#include <algorithm>
#include <utility>

namespace orbelcast {

Surface& PictureBox::Sized() const {
  surface_.Resize(scale_.PixelsX(Width), scale_.PixelsY(Height), BackColor);
  return surface_;
}

void ItemList::AddItem(std::string text) {
  items_.push_back(std::move(text));
  ListChanged();
}

void ItemList::Clear() {
  items_.clear();
  index_ = -1;
  ListChanged();
}

bool ItemList::ListIndex(int index) {
  if (index == index_) return true;
  if (index != -1) return Choose(index);
  index_ = -1;
  ListIndexChanged(index_);
  return true;
}

bool ItemList::Choose(int index) {
  if (index < 0 || index >= ListCount()) return false;
  if (index_ != index) {
    index_ = index;
    ListIndexChanged(index_);
  }
  // A copy: the handling may end the list.
  if (const auto click = OnClick) click();
  return true;
}

void ListBox::Clear() {
  selected_.clear();
  ItemList::Clear();
}

bool ListBox::Selected(int index) const {
  return index >= 0 && index < ListCount() && std::ranges::binary_search(selected_, index);
}

void ListBox::Selected(int index, bool selected) {
  if (index < 0 || index >= ListCount() || Selected(index) == selected) return;
  const auto place = std::ranges::lower_bound(selected_, index);
  if (selected) {
    selected_.insert(place, index);
  } else {
    selected_.erase(place);
  }
  SelectionChanged();
}

void TextBox::Type(const std::string& text) {
  std::size_t bytes = 0;
  int characters = 0;
  while (bytes < text.size() && (MaxLength == 0 || characters < MaxLength)) {
    // A character of UTF-8 is its first byte and those that continue it.
    do ++bytes;
    while (bytes < text.size() && (static_cast<unsigned char>(text[bytes]) & 0xC0) == 0x80);
    ++characters;
  }
  Text = text.substr(0, bytes);
}

void Window::ShowModal(MessageLoop& loop) {
  if (IsOpen()) return;
  if (!Opened.HasListeners()) {
    Load();
    return;
  }
  Completion closed;
  closed_ = &closed;
  Visible = true;
  Opened();
  loop.Wait(closed);
  // The wait of a loop that ends returns early.
  if (closed_ == &closed) Unload();
}

void Window::Unload() {
  if (closed_ == nullptr) return;
  Completion& closed = *std::exchange(closed_, nullptr);
  Visible = false;
  Closed();
  Load();
  closed.Complete();
}

}  // namespace orbelcast
