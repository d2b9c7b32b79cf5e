#include "player/user_control1.h"

#include <cstdint>
#include <functional>
#include <utility>

#include "player/recording.h"
#include "toolkit/version.h"

namespace orbelcast {

namespace {

constexpr std::string_view kYes = "Yes";

std::string Stored(const PropertyBag& bag, std::string_view key) {
  const auto found = bag.find(key);
  return found == bag.end() ? std::string() : found->second;
}

}  // namespace

// The host's pointer and the handlers' are two: when the host lets go of its own, the control ends at once for the
// host, while a handler that is still inside a method keeps the memory until it returns.
std::shared_ptr<UserControl1> UserControl1::Create(Platform& platform) {
  std::shared_ptr<UserControl1> inner(new UserControl1(platform));
  inner->life_.Begin(inner);
  inner->UserControl_Initialize();
  UserControl1* control = inner.get();
  return {control, [inner = std::move(inner)](UserControl1*) mutable {
            inner->UserControl_Terminate();
            inner.reset();
          }};
}

UserControl1::UserControl1(Platform& platform)
    : PlayerChildren(platform),
      life_(platform.loop),
      server_(platform, pointer_),
      AlertsWin(platform.http, server_.Questions(), life_),
      MultiCams(life_),
      XFullScreen(platform, life_),
      recorder_(platform, Conv, RecordingOf(*this)),
      snapshot_(platform, *this, life_),
      server_commands_(platform, life_, server_, AlertsWin, LogForm),
      toolbar_(*this, life_,
               {.stream = stream_,
                .archive = archive_,
                .recorder = recorder_,
                .snapshot = snapshot_,
                .server = server_commands_,
                .full_screen = full_screen_,
                .cameras = multiple_cameras_}),
      picture_choices_(*this, platform.registry, life_, stream_, toolbar_),
      layout_(*this, life_, platform.screen),
      camera_choice_(CamList, life_, [this] { CamList_Click(); }) {
  ConnectHandlers();
}

void UserControl1::ConnectHandlers() {
  VS->Events.VigilboxTCR.Listen([this](std::string& year, std::string& month, std::string& day, std::string& hour,
                                       std::string& minute, std::string& second, std::string&, std::string&) {
    archive_.VS_VigilboxTCR({year, month, day, hour, minute, second});
  });
  VS->Events.StreamInfo.Listen([this](std::int32_t&, std::int32_t&) { recorder_.WriteFrame(); });
}

void UserControl1::UserControl_Initialize() {
  Label1.Caption = "Version " + VersionText() + " - " + std::string(kLegalNotice);
  picture_choices_.Initialize();
}

void UserControl1::UserControl_Terminate() {
  life_.End();
  pointer_.End();
  server_.End();
  recorder_.End();
  for (const NamedChild& window : Windows()) std::get<Window*>(window.control)->Unload();
  XFullScreen.vs.reset();
  VS.reset();
}

std::vector<NamedChild> UserControl1::Windows() {
  return {{"AlertsWin", static_cast<Window*>(&AlertsWin)},
          {"MultiCams", static_cast<Window*>(&MultiCams)},
          {"LogForm", static_cast<Window*>(&LogForm)},
          {"XFullScreen", static_cast<Window*>(&XFullScreen)}};
}

// ---- Properties that the host has kept ------------------------------------------------------------------------------

void UserControl1::ReadProperties(PropertyBag bag) {
  const auto alive = life_.StayAlive();
  // Before the server is waited for: the container may size and show the control meanwhile.
  const bool has_extents = !Stored(bag, "_ExtentX").empty() && !Stored(bag, "_ExtentY").empty();
  if (has_extents) layout_.Freeze(true);
  // The kept properties of a server end when the player turns to another one meanwhile; the rest are the control's own.
  const auto server = server_.TurnTo(Stored(bag, "Server"));
  ReadServer(bag);
  if (life_.Ended()) return;
  if (has_extents) PlayerControls.Visible = true;
  const bool starts = server.IsCurrent() && Stored(bag, "Start") == kYes;
  if (starts && !stream_.Live()) return;
  ShowExtendedFeatures(Stored(bag, "ExtendedControls") == kYes);
  if (life_.Ended()) return;
  const std::string device = Stored(bag, "Device");
  if (server.IsCurrent() && !device.empty()) SelectDevice(device, server);
  if (Stored(bag, "_Resize") == kYes) {
    layout_.Freeze(false);
    layout_.UserControl_Resize();
    if (!life_.Yield()) return;
  }
  layout_.UserControl_Resize();
}

void UserControl1::ReadServer(const PropertyBag& bag) {
  const std::string server = Stored(bag, "Server");
  if (server.empty()) {
    CamList.Visible = false;
    stream_.TakeAddresses(Stored(bag, "LURL"), Stored(bag, "IURL"));
    return;
  }
  const std::string port = Stored(bag, "Port");
  server_.LogIn(port, Stored(bag, "Username"), Stored(bag, "Password"));
  CamList.Visible = true;
  // With the colon even where the port is empty.
  LoadCameraList(server + ":" + port);
}

void UserControl1::SelectDevice(const std::string& device, const ServerQuestions::Server& server) {
  const auto camera = cameras_.Find(device);
  if (!camera) return;
  camera_choice_.Select(*camera);
  if (server.IsCurrent()) CamList_Click();
}

// ---- The server and its cameras -------------------------------------------------------------------------------------

void UserControl1::Connect2Server(std::string xServer, std::string xUsername, std::string xPassword) {
  const auto alive = life_.StayAlive();
  server_.TurnTo(xServer);
  server_.LogIn("", std::move(xUsername), std::move(xPassword));
  if (xServer.empty()) return;
  CamList.Visible = true;
  if (!LoadCameraList(xServer)) return;
  PlayerControls.Visible = true;
  layout_.UserControl_Resize();
  if (!life_.Yield()) return;
  layout_.UserControl_Resize();
}

// The list of the server before ends with the question: its cameras are not for this one's user name and password.
bool UserControl1::LoadCameraList(const std::string& address) {
  cameras_.Clear();
  const auto info = server_.AskForCameras(address);
  if (!info) return false;
  cameras_.Fill(info->Lines);
  return true;
}

void UserControl1::CamList_Click() {
  const int x = CamList.ListIndex();
  multiple_cameras_.Forget();
  RefreshURLs(cameras_.LiveUrlOf(x), cameras_.ArchiveUrlOf(x));
}

void UserControl1::RefreshURLs(const std::string& l, const std::string& i) {
  const auto alive = life_.StayAlive();
  stream_.TakeAddresses(l, i);
  if (stream_.Live()) archive_.AllowPlay(false);
}

void UserControl1::SetMultiCams() {
  const auto alive = life_.StayAlive();
  multiple_cameras_.SetMultiCams();
}

void UserControl1::ShowTogether(const std::string& cameras) {
  const auto alive = life_.StayAlive();
  CamList.ListIndex(-1);
  multiple_cameras_.Show(cameras);
}

// ---- Clips and layout -----------------------------------------------------------------------------------------------

void UserControl1::AviStart() {
  const auto alive = life_.StayAlive();
  recorder_.AviStart();
}

void UserControl1::StopAvi() {
  const auto alive = life_.StayAlive();
  recorder_.StopAvi();
}

void UserControl1::ShowExtendedFeatures(bool value) {
  layout_.ShowExtendedFeatures(value);
  layout_.UserControl_Resize();
}

void UserControl1::Resize(float width, float height) {
  Site(width, height);
  layout_.UserControl_Resize();
}

}  // namespace orbelcast
