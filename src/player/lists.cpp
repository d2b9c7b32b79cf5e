// What the three lists choose: the camera, the frame rate, the picture's size and quality.

#include <cstdint>
#include <string>

#include "player/quality.h"
#include "player/registry_text.h"
#include "player/toolbar.h"
#include "player/user_control1.h"
#include "protocol/server_address.h"

namespace orbelcast {

void UserControl1::CamList_Click() {
  const auto x = static_cast<std::size_t>(CamList.ListIndex());  // none selected is outside every array
  MultiCamSelection = "";
  std::string live;
  std::string archive;
  if (x < CamDevice.size()) {
    archive = ArchiveAddress(CommandBase(), CamDevice[x]);
    live = LiveUrlOf(x);
  }
  RefreshURLs(live, archive);
}

std::string UserControl1::SelectedDevice() const {
  const auto x = static_cast<std::size_t>(CamList.ListIndex());
  return x < CamDevice.size() ? CamDevice[x] : std::string();
}

std::string UserControl1::LiveUrlOf(std::size_t camera) const {
  return LiveAddress(CamLive[camera], Username, Password);
}

void UserControl1::FrameRate_Click() {
  const int n = FrameRate.ListIndex();
  if (n == 0) {
    Player_Click(toolbar::kStop);
    return;
  }
  auto rate = static_cast<std::int16_t>(n);
  VS->FrameRate(rate);
  RegWriteString(platform_.registry, kSettingsHive, kSettingsKey, kFrameRateName, std::to_string(n));
}

void UserControl1::Resolution_Click() {
  const int n = Resolution.ListIndex();
  if (n >= 0 && !kPictureQualities[static_cast<std::size_t>(n)].code.empty()) {
    QualitySuffix = orbelcast::QualitySuffix(kPictureQualities[static_cast<std::size_t>(n)].code);
  }
  Player_Click(LastCommand);
  if (Terminating) return;
  RegWriteString(platform_.registry, kSettingsHive, kSettingsKey, kResolutionName, std::to_string(n));
}

}  // namespace orbelcast
