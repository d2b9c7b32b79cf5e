#include "player/user_control1.h"

#include <utility>

#include "player/toolbar.h"
#include "player/toolbar_pictures.h"

namespace orbelcast {

namespace {

/// Where a toolbar button sits, in the toolbar or in Frame1, and what it is called.
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

// The host's pointer and the handlers' are two: when the host lets go of its own, the control ends at once for the
// host, while a handler that is still inside a method keeps the memory until it returns.
std::shared_ptr<UserControl1> UserControl1::Create(Platform& platform) {
  std::shared_ptr<UserControl1> inner(new UserControl1(platform));
  inner->self_ = inner;
  inner->UserControl_Initialize();
  UserControl1* control = inner.get();
  return {control, [inner = std::move(inner)](UserControl1*) mutable {
            inner->UserControl_Terminate();
            inner.reset();
          }};
}

UserControl1::UserControl1(Platform& platform)
    : VS(VideoServerPush::Create(platform)),
      AlertsWin(platform.http, questions_, Starter()),
      MultiCams(Starter()),
      XFullScreen(platform, Starter()),
      platform_(platform),
      recorder_(platform, Conv, RecorderHost()) {
  PlaceChildren();
  ConnectHandlers();
}

UserControl1::~UserControl1() = default;

HandlerStarter UserControl1::Starter() {
  return [this](std::function<void()> handler) { Start(std::move(handler)); };
}

void UserControl1::Start(std::function<void()> handler) {
  platform_.loop.RunHandler([this, handler = std::move(handler)] {
    const auto alive = StayAlive();
    if (alive && !Terminating) handler();
  });
}

void UserControl1::PlaceChildren() {
  Place(CamList, 0, 0, 5055, 315);
  Place(PlayerControls, 0, 4080, 5235, 1755);
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

  for (std::size_t i = 0; i < Player.size(); ++i) {
    Place(Player[i], kTools[i].left, kTools[i].top, kTools[i].width, kToolHeight);
    Player[i].ToolTipText = kTools[i].tip;
    Player[i].SetPicture(platform_.pictures.Decode(toolbar::PictureOf(static_cast<std::int16_t>(i))));
  }
  Player[toolbar::kStopAvi].Visible = false;
  for (const std::int16_t extended : toolbar::kExtended) Player[extended].Visible = false;
  for (const std::int16_t direction : {toolbar::kReversePlay, toolbar::kPlay}) Player[direction].Enabled = false;

  for (std::size_t i = 0; i < TCR.size(); ++i) {
    Place(TCR[i], kTimeBoxes[i].left, 0, kTimeBoxes[i].width, kTimeBoxHeight);
    TCR[i].MaxLength = kTimeBoxes[i].characters;
    TCR[i].Text = std::string(static_cast<std::size_t>(TCR[i].MaxLength), '-');
  }
}

void UserControl1::ConnectHandlers() {
  // What a front end calls becomes a handler of its own; what code selects is handled where the code is.
  const auto on_choice = [this](ComboBox& list, void (UserControl1::*handler)()) {
    list.OnClick = [this, &list, handler] {
      if (std::exchange(selecting_, nullptr) == &list) {
        (this->*handler)();
      } else {
        Start([this, handler] { (this->*handler)(); });
      }
    };
  };
  on_choice(CamList, &UserControl1::CamList_Click);
  on_choice(FrameRate, &UserControl1::FrameRate_Click);
  on_choice(Resolution, &UserControl1::Resolution_Click);

  for (std::size_t i = 0; i < Player.size(); ++i) {
    Player[i].OnClick = [this, i] { Start([this, i] { Player_Click(static_cast<std::int16_t>(i)); }); };
  }
  for (std::size_t i = 0; i < TCR.size(); ++i) {
    TCR[i].OnLostFocus = [this, i] { Start([this, i] { TCR_LostFocus(i); }); };
  }
  VS->Events.VigilboxTCR.Listen([this](std::string& year, std::string& month, std::string& day, std::string& hour,
                                       std::string& minute, std::string& second, std::string&, std::string&) {
    VS_VigilboxTCR({year, month, day, hour, minute, second});
  });
  VS->Events.StreamInfo.Listen([this](std::int32_t&, std::int32_t&) { recorder_.WriteFrame(); });
}

void UserControl1::UserControl_Terminate() {
  Terminating = true;
  pointer_.End();
  questions_.TurnToServer();
  recorder_.End();
  for (const NamedChild& window : Windows()) std::get<Window*>(window.control)->Unload();
  XFullScreen.vs.reset();
  VS.reset();
}

void UserControl1::RefreshURLs(const std::string& l, const std::string& i) {
  const auto alive = StayAlive();
  LiveUrl = l;
  ArchiveUrl = i;
  if (!ConnectViewer(LiveUrl + QualitySuffix, false)) return;
  Player[toolbar::kReversePlay].Enabled = false;
  Player[toolbar::kPlay].Enabled = false;
}

void UserControl1::DoResize(bool X) {
  LayoutFrozen = !X;
}

void UserControl1::Connect2Server(std::string xServer, std::string xUsername, std::string xPassword) {
  const auto alive = StayAlive();
  questions_.TurnToServer();
  Server = xServer;
  Port = "";
  Username = xUsername;
  Password = xPassword;
  if (Server.empty()) return;
  CamList.Visible = true;
  if (!LoadCameraList(xServer)) return;
  PlayerControls.Visible = true;
  UserControl_Resize();
  if (!Yield()) return;
  UserControl_Resize();
}

void UserControl1::ShowExtendedFeatures(bool value) {
  show_extended_features_ = value;
  UserControl_Resize();
}

std::vector<NamedChild> UserControl1::Children() {
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

std::vector<NamedChild> UserControl1::Windows() {
  return {{"AlertsWin", static_cast<Window*>(&AlertsWin)},
          {"MultiCams", static_cast<Window*>(&MultiCams)},
          {"LogForm", static_cast<Window*>(&LogForm)},
          {"XFullScreen", static_cast<Window*>(&XFullScreen)}};
}

void UserControl1::Select(ComboBox& list, int index) {
  selecting_ = &list;
  list.ListIndex(index);
  selecting_ = nullptr;
}

bool UserControl1::ConnectViewer(const std::string& url, bool once, const std::string& message) {
  if (Terminating) return false;
  VS->Connect(url, once, message);
  return !Terminating;
}

bool UserControl1::ShowBandwidth(bool show) {
  if (Terminating) return false;
  VS->ShowBandwidth(show);
  return !Terminating;
}

bool UserControl1::Yield() {
  platform_.loop.Yield();
  return !Terminating;
}

bool UserControl1::OpenWindow(Window& window) {
  if (Terminating) return false;
  window.ShowModal(platform_.loop);
  return !Terminating;
}

}  // namespace orbelcast
