#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "platform/message_loop.h"
#include "toolkit/property.h"
#include "toolkit/surface.h"
#include "toolkit/twips.h"

/// The `On…` members (a user's click, press, drop or menu choice) start a handler of the message loop by themselves and
/// may be empty. The fonts are named where a front end must know them. Texts are UTF-8 at best: a server's are
/// bytes of unknown quality, which a front end shows as well as it can.
namespace orbelcast {

/// Data dropped onto a control: each format's bytes under its media type, passed through unread.
struct DropData {
  std::vector<std::pair<std::string, std::string>> formats;

  /// The data of `media_type`; empty where it was not offered.
  std::string Get(const std::string& media_type) const {
    for (const auto& [type, data] : formats) {
      if (type == media_type) return data;
    }
    return {};
  }
};

/// A drop in the middle of being handled; a handler may change `effect` (0 none, 1 copy, 2 move), which is the answer
/// to the program that the data came from. `button`: 1 left, 2 right, 4 middle, added up; `shift`: 1 shift, 2 control,
/// 4 alt, added up. The position is twips, in the child's own coordinates.
struct Drop {
  DropData data;
  std::int32_t effect = 1;
  std::int16_t button = 0;
  std::int16_t shift = 0;
  float x = 0;
  float y = 0;
};

/// Mouse buttons as handlers are told them.
inline constexpr std::int16_t kLeftButton = 1;
inline constexpr std::int16_t kRightButton = 2;
inline constexpr std::int16_t kMiddleButton = 4;

/// The properties of every child control.
struct ChildControl {
  Property<float> Left;
  Property<float> Top;
  Property<float> Width;
  Property<float> Height;
  Property<bool> Visible{true};
  Property<bool> Enabled{true};
  Property<std::string> ToolTipText;
  Property<std::string> Tag;

  /// A mouse button went down over it.
  std::function<void(std::int16_t button)> OnMouseDown;
};

inline void Place(ChildControl& control, float left, float top, float width, float height) {
  control.Left = left;
  control.Top = top;
  control.Width = width;
  control.Height = height;
}

struct Label : ChildControl {
  Property<std::string> Caption;
  std::string Font = "Arial";
};

struct Frame : ChildControl {};

/// A picture that can be drawn on. The drawing is kept.
///
/// Its surface has the box's size in pixels, and follows the size: the drawing stays at the top-left corner, new
/// parts have the background colour. It takes memory from the first time on that it is drawn on or looked at.
struct PictureBox : ChildControl {
  Property<Color> BackColor{Rgb(255, 255, 255)};

  /// Sets the screen's scale, by which the surface is sized.
  void SetScale(TwipsScale scale) { scale_ = scale; }
  /// The surface to draw on. Valid until the box changes its size.
  Surface& Canvas() {
    drawn_ = true;
    return Sized();
  }
  /// Whether anything was drawn on it yet.
  bool Drawn() const { return drawn_; }
  /// The drawing so far, on the background colour. Valid until the box changes its size.
  const Surface& Image() const { return Sized(); }

  /// From now on `watcher` is told what is drawn on the surface, for as long as it lives.
  void Watch(const std::shared_ptr<DrawingWatcher>& watcher) { surface_.Watch(watcher); }

  /// Brings back the background colour everywhere.
  void Cls() { Sized().Fill(BackColor); }
  /// Tells the front end to paint the drawing.
  void Refresh() { Refreshed(); }
  Signal<> Refreshed;

  /// A picture that the box carries, such as an icon; it is not drawn by itself.
  const Surface& Picture() const { return picture_; }
  void SetPicture(Surface picture) { picture_ = std::move(picture); }

  std::function<void(Drop& drop)> OnDrop;

 private:
  Surface& Sized() const;

  TwipsScale scale_;
  bool drawn_ = false;
  mutable Surface surface_;  // sized when it is asked for
  Surface picture_;
};

/// A picture that is shown stretched to its place.
struct Image : ChildControl {
  /// The picture; set with `SetPicture`, which tells `PictureChanged`.
  const Surface& Picture() const { return *picture_; }
  /// `picture` is not null; it may be shared, so it must not be drawn on any more.
  void SetPicture(std::shared_ptr<const Surface> picture) {
    picture_ = std::move(picture);
    PictureChanged();
  }
  Signal<> PictureChanged;

  std::function<void(Drop& drop)> OnDrop;

 private:
  std::shared_ptr<const Surface> picture_ = std::make_shared<Surface>();
};

/// A timer: while enabled and with a positive interval (milliseconds) it ticks. A TimerDriver makes it tick.
struct Timer {
  Property<int> Interval;
  Property<bool> Enabled{false};
};

struct MenuItem {
  Property<std::string> Caption;  ///< "-" is a separator.
  Property<bool> Checked{false};
  Property<bool> Enabled{true};
  std::function<void()> OnClick;
};

/// A menu that pops up at the mouse pointer.
struct Menu {
  Property<std::string> Caption;
  std::vector<MenuItem*> Items;

  /// Asks the front end to show the menu; choosing an item calls its OnClick, a separator's never.
  void PopUp() { PoppedUp(); }
  Signal<> PoppedUp;
};

/// A button. One that carries a picture shows it in place of the caption.
struct Button : ChildControl {
  Property<std::string> Caption;
  std::string Font = "Arial";

  /// Drawn for a button several times as large as the usual one, transparent around; front ends scale it down.
  const Surface& Picture() const { return picture_; }
  void SetPicture(Surface picture) { picture_ = std::move(picture); }

  std::function<void()> OnClick;

 private:
  Surface picture_;
};

/// The items of a list control: texts, one of which is selected.
///
/// `ListIndex` counts from 0, −1 is no selection. Giving it another item runs the list's click handling (`OnClick`)
/// exactly as a user's choice does, and returns when that has ended; clearing the selection (−1) only clears it. An
/// index outside the list fails: nothing changes. A front end sends a user's choice through `Choose`, which runs the
/// click handling also where the user chose the item that was selected already.
struct ItemList : ChildControl {
  const std::vector<std::string>& List() const { return items_; }
  int ListCount() const { return static_cast<int>(items_.size()); }
  void AddItem(std::string text);
  /// Removes every item and the selection. No click.
  void Clear();

  int ListIndex() const { return index_; }
  /// False, and nothing changes, where there is no such item.
  bool ListIndex(int index);
  /// A user's choice of an item; false where there is no such item.
  bool Choose(int index);

  std::function<void()> OnClick;
  /// Items were added or removed.
  Signal<> ListChanged;
  Signal<int> ListIndexChanged;

 private:
  std::vector<std::string> items_;
  int index_ = -1;
};

/// A list that drops down from the selected item.
struct ComboBox : ItemList {};

/// A list that is open. One that allows several selected items says so with `MultiSelect`.
struct ListBox : ItemList {
  std::string Font = "Arial";
  bool MultiSelect = false;

  /// Removes every item and all selections. No click.
  void Clear();

  /// Of a list that allows several: whether the item is selected. False outside the list.
  bool Selected(int index) const;
  void Selected(int index, bool selected);
  Signal<> SelectionChanged;

 private:
  std::vector<int> selected_;  // ascending
};

/// A box of text that a user types.
struct TextBox : ChildControl {
  Property<std::string> Text;
  int MaxLength = 0;  ///< In characters; 0 is no limit.
  bool MultiLine = false;
  std::string Font = "Arial";

  /// Takes in a text that a user types, as far as the box takes it.
  void Type(const std::string& text);
  /// The user leaves the box.
  std::function<void()> OnLostFocus;
};

struct Window;

/// A child control under its name, such as "lStatus" or "Player(3)".
using ChildReference = std::variant<Label*, Frame*, PictureBox*, Image*, Timer*, MenuItem*, Menu*, Button*, ComboBox*,
                                    ListBox*, TextBox*, Window*>;
struct NamedChild {
  std::string name;
  ChildReference control;
  /// Its container, which hides it when hidden itself; null where that is the control.
  const ChildControl* inside = nullptr;
};

/// A window of its own, made of child controls. `Width` and `Height` are its inner size.
///
/// `ShowModal` opens it and waits; a front end that listens to `Opened` shows it, and calls `Close` when the user
/// closes it by its close box. Where no front end listens it could not be closed: ShowModal then returns at once.
///
/// Unloading resets a window: its children's contents are gone when it is opened again.
struct Window : ChildControl {
  Window() { Visible = false; }
  virtual ~Window() = default;
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;

  Property<std::string> Caption;
  bool FullScreen = false;  ///< Without a border, over the whole screen.

  /// Shows the window until it is unloaded, letting the loop run. Returns at once where it is shown already.
  void ShowModal(MessageLoop& loop);
  /// Ends the window: it closes at once and may be shown again; ShowModal returns when the loop comes to it. Nothing
  /// where it is not shown.
  void Unload();
  /// The user closes it by its close box.
  void Close() { Unload(); }
  bool IsOpen() const { return Visible; }

  /// The window has got its size, or another one, from the front end; after Width and Height were set.
  std::function<void()> OnResize;

  /// Its children with their names, in tab order.
  virtual std::vector<NamedChild> Children() { return {}; }

  Signal<> Opened;
  Signal<> Closed;

 protected:
  /// Resets the children to their state when the window was made.
  virtual void Load() {}

 private:
  Completion* closed_ = nullptr;  // while it is shown
};

}  // namespace orbelcast
