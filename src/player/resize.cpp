// Where the children sit.

#include "player/toolbar.h"
#include "player/user_control1.h"
#include "toolkit/rounding.h"

namespace orbelcast {

namespace {

/// The control must be larger than this to have room for the toolbar: the toolbar's own width, and its height with a
/// picture above.
constexpr float kToolbarNeedsWidth = 5235;
constexpr float kToolbarNeedsHeight = 5900;
/// The toolbar's lower edge hangs below the control's.
constexpr int kToolbarHangsPixels = 2;

}  // namespace

void UserControl1::Site(float width, float height) {
  width_ = width;
  height_ = height;
}

void UserControl1::Resize(float width, float height) {
  Site(width, height);
  UserControl_Resize();
}

void UserControl1::Show() {
  UserControl_Resize();
}

void UserControl1::UserControl_Resize() {
  if (Terminating) return;
  const auto alive = StayAlive();
  for (const std::int16_t extended : toolbar::kExtended) Player[extended].Visible = show_extended_features_;
  if (LayoutFrozen) return;
  PlayerControls.Visible = height_ > kToolbarNeedsHeight && width_ > kToolbarNeedsWidth;
  CamList.Top = 0;
  VSPlace.Left = 0;
  if (!PlaceViewer(VSPlace.Width, width_)) return;
  const float below_list = CamList.Visible ? static_cast<float>(RoundToEven(CamList.Height)) : 0;
  VSPlace.Top = below_list;
  if (PlayerControls.Visible) {
    const float toolbar_height = PlayerControls.Height;
    if (!PlaceViewer(VSPlace.Height, height_ - (toolbar_height + below_list))) return;
    PlayerControls.Top =
        height_ - toolbar_height + static_cast<float>(kToolbarHangsPixels * platform_.screen.TwipsPerPixelY());
    PlayerControls.Left = (VSPlace.Width - PlayerControls.Width) / 2;
  }
  CamList.Width = width_;
  CamList.Left = 0;
  CamList.Top = 0;
  Yield();
}

bool UserControl1::PlaceViewer(Property<float>& field, float value) {
  if (field == value) return !Terminating;
  field = value;
  if (VS) VS->Resize(VSPlace.Width, VSPlace.Height);
  return !Terminating;
}

}  // namespace orbelcast
