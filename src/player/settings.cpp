// How a player starts: its lists, the stored choices, and the properties that the host has kept.

#include <string>
#include <string_view>
#include <vector>

#include "player/limits.h"
#include "player/quality.h"
#include "player/registry_text.h"
#include "player/texts.h"
#include "player/user_control1.h"
#include "protocol/server_info.h"
#include "protocol/text.h"
#include "toolkit/ascii.h"
#include "toolkit/rounding.h"
#include "toolkit/version.h"

namespace orbelcast {

namespace {

/// What LastCommand is before the first command: none.
constexpr std::int16_t kNoCommand = 1000;
constexpr int kFastest = 25;
/// What is chosen where nothing is stored.
constexpr int kManual = 0;
constexpr int kUsualResolution = 15;

constexpr std::string_view kYes = "Yes";

std::string Stored(const PropertyBag& bag, std::string_view key) {
  const auto found = bag.find(key);
  return found == bag.end() ? std::string() : found->second;
}

/// A stored list index; 32-bit at most, so what is beyond is in no list.
int StoredIndex(const std::string& text) {
  return RoundToEven(LeadingNumber(text).value_or(-1));
}

}  // namespace

void UserControl1::UserControl_Initialize() {
  LastCommand = kNoCommand;
  Label1.Caption = "Version " + VersionText() + " - " + std::string(kLegalNotice);

  FrameRate.AddItem("Manual");
  for (int rate = 1; rate <= kFastest; ++rate) FrameRate.AddItem(std::to_string(rate) + " FPS");
  const std::string rate = RegReadString(platform_.registry, kSettingsHive, kSettingsKey, kFrameRateName);
  Select(FrameRate, rate.empty() ? kManual : StoredIndex(rate));

  for (const PictureQuality& quality : kPictureQualities) Resolution.AddItem(std::string(quality.text));
  const std::string resolution = RegReadString(platform_.registry, kSettingsHive, kSettingsKey, kResolutionName);
  Select(Resolution, resolution.empty() ? kUsualResolution : StoredIndex(resolution));
  Resolution_Click();
}

void UserControl1::ReadProperties(PropertyBag bag) {
  const auto alive = StayAlive();
  // Before the server is waited for: the container may size and show the control meanwhile.
  const bool has_extents = !Stored(bag, "_ExtentX").empty() && !Stored(bag, "_ExtentY").empty();
  if (has_extents) LayoutFrozen = true;
  // What is kept of a server ends where the player turns to another one meanwhile; the rest is the control's own.
  const auto server = questions_.TurnToServer();
  ReadServer(bag);
  if (Terminating) return;
  if (has_extents) PlayerControls.Visible = true;
  const bool starts = server.IsCurrent() && Stored(bag, "Start") == kYes;
  if (starts && !ConnectViewer(LiveUrl + QualitySuffix, false)) return;
  ShowExtendedFeatures(Stored(bag, "ExtendedControls") == kYes);
  if (Terminating) return;
  const std::string device = Stored(bag, "Device");
  if (server.IsCurrent() && !device.empty()) SelectDevice(device, server);
  if (Stored(bag, "_Resize") == kYes) {
    LayoutFrozen = false;
    UserControl_Resize();
    if (!Yield()) return;
  }
  UserControl_Resize();
}

void UserControl1::ReadServer(const PropertyBag& bag) {
  Server = Stored(bag, "Server");
  if (Server.empty()) {
    CamList.Visible = false;
    LiveUrl = Stored(bag, "LURL");
    ArchiveUrl = Stored(bag, "IURL");
    return;
  }
  Port = Stored(bag, "Port");
  Username = Stored(bag, "Username");
  Password = Stored(bag, "Password");
  CamList.Visible = true;
  // The colon stands there without a port too.
  LoadCameraList(Server + ":" + Port);
}

// The list of the server before ends with the question: its cameras are not for this one's user name and password.
bool UserControl1::LoadCameraList(const std::string& address) {
  CamList.Clear();
  CamDevice.assign(1, {});
  CamLive.assign(1, {});
  const auto info = AskServer(address, InfoMode::kCameras);
  if (!info) return false;
  SysName = info->SystemName;
  ForEachLine(info->Lines, [&](std::size_t k, const std::vector<std::string_view>& fields) {
    CamDevice.resize(k + 1);
    CamLive.resize(k + 1);
    if (fields.size() > 2) CamLive[k] = fields[2];
    if (!fields.empty()) CamDevice[k] = fields[0];
    // A camera without a name is not shown; its place in the arrays stays, so those behind it follow one later.
    if (fields.size() > 1) AddShown(CamList, std::string(fields[1]));
  });
  return true;
}

void UserControl1::SelectDevice(const std::string& device, const ServerQuestions::Server& server) {
  const auto count = static_cast<std::size_t>(CamList.ListCount());
  for (std::size_t k = 0; k < count && k < CamDevice.size(); ++k) {
    if (!EqualIgnoringCase(CamDevice[k], device)) continue;
    Select(CamList, static_cast<int>(k));
    if (server.IsCurrent()) CamList_Click();
    return;
  }
}

}  // namespace orbelcast
