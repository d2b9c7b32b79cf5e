#include "player/player_children.h"

#include <cstddef>
#include <cstdint>
#include <initializer_list>

#include "player/toolbar.h"
#include "player/toolbar_pictures.h"
#include "toolkit/built_in_picture.h"

namespace orbelcast {

namespace {

/// A toolbar button: its place, in the toolbar or in Frame1, and its tool tip.
struct Tool {
  float left;
  float top;
  float width;
  const char* tip;
};
constexpr float kToolHeight = 315;
constexpr std::array<Tool, 18> kTools{{
    {0, 0, 435, "Top of the archive"},
    {480, 0, 435, "Reverse Play"},
    {960, 0, 435, "Stop"},
    {1860, 0, 375, "Play"},
    {2280, 0, 375, "End of Archive"},
    {1440, 0, 375, "Live"},
    {1440, 360, 375, "Information"},
    {4860, 0, 375, "Search"},
    {0, 360, 435, "Stop AVI"},
    {0, 360, 435, "Save AVI"},
    {480, 360, 435, "Snapshot"},
    {120, 240, 435, "Log viewer"},
    {3960, 240, 1035, "Stop AVI"},  // the second of that name, without a command
    {1800, 240, 555, "Send Message"},
    {1200, 240, 555, "I/O"},
    {600, 240, 555, "Alerts"},
    {960, 360, 435, "Fullscreen"},
    {2460, 240, 2595, "Multiple Cameras"},
}};

/// A box of the archive's date and time.
struct TimeBox {
  float left;
  float width;
  int characters;
};
constexpr float kTimeBoxHeight = 285;
constexpr std::array<TimeBox, 6> kTimeBoxes{
    {{2700, 495, 4}, {3210, 315, 2}, {3540, 315, 2}, {3900, 315, 2}, {4200, 315, 2}, {4500, 315, 2}}};

}  // namespace

PlayerChildren::PlayerChildren(Platform& platform) : VS(VideoServerPush::Create(platform)) {
  Place(CamList, 0, 0, 5055, 315);
  Place(PlayerControls, 0, 4080, kToolbarWidth, 1755);
  Place(Frame1, 0, 720, 5200, 735);
  Place(FrameRate, 4380, 360, 855, 300);
  Place(Resolution, 1860, 360, 2475, 300);
  Place(Label1, 0, 1450, 5055, 255);
  Place(Conv, 3480, 2880, 1455, 975);
  Place(VSPlace, 0, 360, 5220, 3660);
  VS->Resize(VSPlace.Width, VSPlace.Height);
  FrameRate.ToolTipText = "Frame Rate (frames per second)";
  Resolution.ToolTipText = "Broadcast quality";
  CamList.Visible = false;
  Conv.Visible = false;
  PlaceTools(platform.pictures);
  PlaceTimeBoxes();
}

void PlayerChildren::PlaceTools(PictureCodec& pictures) {
  for (std::size_t i = 0; i < Player.size(); ++i) {
    Place(Player[i], kTools[i].left, kTools[i].top, kTools[i].width, kToolHeight);
    Player[i].ToolTipText = kTools[i].tip;
    Player[i].SetPicture(BuiltInPicture(pictures, toolbar::PictureOf(static_cast<std::int16_t>(i))));
  }
  Player[toolbar::kStopAvi].Visible = false;
  for (const std::int16_t extended : toolbar::kExtended) Player[extended].Visible = false;
  for (const std::int16_t direction : {toolbar::kReversePlay, toolbar::kPlay}) Player[direction].Enabled = false;
}

void PlayerChildren::PlaceTimeBoxes() {
  for (std::size_t i = 0; i < TCR.size(); ++i) {
    Place(TCR[i], kTimeBoxes[i].left, 0, kTimeBoxes[i].width, kTimeBoxHeight);
    TCR[i].MaxLength = kTimeBoxes[i].characters;
    TCR[i].Text = std::string(static_cast<std::size_t>(TCR[i].MaxLength), '-');
  }
}

std::vector<NamedChild> PlayerChildren::Children() {
  const ChildControl* const bar = &PlayerControls;
  std::vector<NamedChild> children{{"CamList", &CamList}, {"PlayerControls", &PlayerControls}};
  const auto add_tools = [&](std::initializer_list<std::size_t> tools, const ChildControl* inside) {
    for (const std::size_t i : tools) children.push_back({"Player(" + std::to_string(i) + ")", &Player[i], inside});
  };
  add_tools({0, 1, 2, 5, 3, 4}, bar);
  for (std::size_t i = 0; i < TCR.size(); ++i) children.push_back({"TCR(" + std::to_string(i) + ")", &TCR[i], bar});
  add_tools({7, 9, 8, 10, 16, 6}, bar);
  children.push_back({"Resolution", &Resolution, bar});
  children.push_back({"FrameRate", &FrameRate, bar});
  children.push_back({"Frame1", &Frame1, bar});
  add_tools({11, 15, 14, 13, 17, 12}, &Frame1);
  children.push_back({"Label1", &Label1, bar});
  children.push_back({"Conv", &Conv});
  return children;
}

}  // namespace orbelcast
