#pragma once

#include <string>

#include "player/camera_list.h"
#include "player/multi_cams_window.h"
#include "player/player_children.h"
#include "player/player_life.h"

namespace orbelcast {

/// Several cameras that the user has chosen, shown together.
class MultipleCameras {
 public:
  /// All outlive this object.
  MultipleCameras(PlayerChildren& children, PlayerLife& life, const CameraList& cameras, MultiCamsWindow& window)
      : children_(children), life_(life), cameras_(cameras), MultiCams(window) {}

  /// Opens the chooser and shows the cameras that were chosen in it.
  void SetMultiCams();
  /// Shows the cameras; `selection` as VideoServerPush::MultiCamView takes it.
  void Show(const std::string& selection);
  /// The last choice, as VideoServerPush::MultiCamView takes it; empty since a single camera was chosen.
  const std::string& Selection() const { return MultiCamSelection; }
  void Forget() { MultiCamSelection = ""; }

 private:
  PlayerChildren& children_;
  PlayerLife& life_;
  const CameraList& cameras_;
  MultiCamsWindow& MultiCams;
  std::string MultiCamSelection;
};

}  // namespace orbelcast
