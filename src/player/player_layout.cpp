#include "player/player_layout.h"

#include <cstdint>

#include "player/toolbar.h"
#include "toolkit/rounding.h"
#include "toolkit/twips.h"

namespace orbelcast {

namespace {

/// The toolbar's lower edge hangs below the control's.
constexpr int kToolbarHangsPixels = 2;

}  // namespace

void PlayerLayout::Site(float width, float height) {
  width_ = width;
  height_ = height;
}

void PlayerLayout::UserControl_Resize() {
  if (life_.Ended()) return;
  const auto alive = life_.StayAlive();
  for (const std::int16_t extended : toolbar::kExtended) children_.Player[extended].Visible = show_extended_features_;
  if (LayoutFrozen) return;
  Frame& toolbar = children_.PlayerControls;
  ComboBox& list = children_.CamList;
  ChildControl& viewer = children_.VSPlace;
  toolbar.Visible = height_ > kToolbarNeedsHeight && width_ > kToolbarNeedsWidth;
  list.Top = 0;
  viewer.Left = 0;
  if (!PlaceViewer(viewer.Width, width_)) return;
  const float below_list = list.Visible ? static_cast<float>(RoundToEven(list.Height)) : 0;
  viewer.Top = below_list;
  if (toolbar.Visible) {
    const float toolbar_height = toolbar.Height;
    if (!PlaceViewer(viewer.Height, height_ - (toolbar_height + below_list))) return;
    toolbar.Top = height_ - toolbar_height + TwipsScale::Of(screen_).TwipsY(kToolbarHangsPixels);
    toolbar.Left = (viewer.Width - toolbar.Width) / 2;
  }
  list.Width = width_;
  list.Left = 0;
  list.Top = 0;
  life_.Yield();
}

bool PlayerLayout::PlaceViewer(Property<float>& field, float value) {
  if (field == value) return !life_.Ended();
  field = value;
  if (children_.VS) children_.VS->Resize(children_.VSPlace.Width, children_.VSPlace.Height);
  return !life_.Ended();
}

}  // namespace orbelcast
