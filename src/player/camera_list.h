#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "player/player_server.h"
#include "toolkit/controls.h"

namespace orbelcast {

/// The server's cameras: their names in the list that the user sees, and the addresses of their pictures. Cameras are
/// numbered as the list's items are, from 0.
class CameraList {
 public:
  /// Both outlive this object.
  CameraList(ComboBox& list, const PlayerServer& server) : CamList(list), server_(server) {}

  void Clear();
  /// Takes on the cameras of a server's answer; the list is empty before.
  void Fill(std::string_view lines);

  /// The camera's device id, archive address and live address, without the picture's size and quality; empty where
  /// there is no such camera.
  std::string DeviceOf(int camera) const;
  std::string ArchiveUrlOf(int camera) const;
  std::string LiveUrlOf(int camera) const;
  /// The first camera of that device id, in any letter case; nothing where none has it.
  std::optional<int> Find(std::string_view device) const;

 private:
  bool Has(int camera) const { return static_cast<std::size_t>(camera) < CamDevice.size(); }

  ComboBox& CamList;
  const PlayerServer& server_;
  // By lines of the server's answer, so they may outgrow the list.
  std::vector<std::string> CamDevice;
  std::vector<std::string> CamLive;
};

}  // namespace orbelcast
