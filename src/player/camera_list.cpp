#include "player/camera_list.h"

#include "player/texts.h"
#include "protocol/server_address.h"
#include "toolkit/ascii.h"

namespace orbelcast {

void CameraList::Clear() {
  CamList.Clear();
  CamDevice.assign(1, {});
  CamLive.assign(1, {});
}

// A camera without a name is not shown; its place in the arrays stays, so that the cameras after it have
// an index there that is one higher than in the list.
void CameraList::Fill(std::string_view lines) {
  ForEachLine(lines, [&](std::size_t k, const std::vector<std::string_view>& fields) {
    CamDevice.resize(k + 1);
    CamLive.resize(k + 1);
    if (fields.size() > 2) CamLive[k] = fields[2];
    if (!fields.empty()) CamDevice[k] = fields[0];
    if (fields.size() > 1) AddShown(CamList, std::string(fields[1]));
  });
}

std::string CameraList::DeviceOf(int camera) const {
  return Has(camera) ? CamDevice[static_cast<std::size_t>(camera)] : std::string();
}

std::string CameraList::ArchiveUrlOf(int camera) const {
  return Has(camera) ? ArchiveAddress(server_.CommandBase(), DeviceOf(camera)) : std::string();
}

std::string CameraList::LiveUrlOf(int camera) const {
  return Has(camera) ? server_.LiveUrlOf(CamLive[static_cast<std::size_t>(camera)]) : std::string();
}

std::optional<int> CameraList::Find(std::string_view device) const {
  for (int k = 0; k < CamList.ListCount() && Has(k); ++k) {
    if (EqualIgnoringCase(CamDevice[static_cast<std::size_t>(k)], device)) return k;
  }
  return std::nullopt;
}

}  // namespace orbelcast
