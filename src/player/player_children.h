#pragma once

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "platform/platform.h"
#include "toolkit/controls.h"
#include "viewer/video_server_push.h"

namespace orbelcast {

/// The save dialog of the player, as it was configured last. Shown through the platform's dialogs.
struct CommonDialog {
  std::string DialogTitle;
  std::string Filter;
  std::string FileName;  ///< The last choice.
};

/// The child controls that the player is made of, at the positions that they were designed at. Positions are those in
/// the container named; the toolbar's children move with it.
struct PlayerChildren {
  /// Twips: the size that the children were designed for.
  static constexpr float kDesignWidth = 5295;
  static constexpr float kDesignHeight = 5940;
  /// Twips: the width of PlayerControls.
  static constexpr float kToolbarWidth = 5235;

  explicit PlayerChildren(Platform& platform);
  PlayerChildren(const PlayerChildren&) = delete;
  PlayerChildren& operator=(const PlayerChildren&) = delete;

  /// The child controls by name, in tab order; the viewer's own are not among them.
  std::vector<NamedChild> Children();

  ComboBox CamList;
  Frame PlayerControls;           ///< The toolbar: holds all that follow down to Label1.
  std::array<TextBox, 6> TCR;     ///< Year, month, day, hour, minute, second of the archive's position.
  std::array<Button, 18> Player;  ///< 11 to 15 and 17 are inside Frame1.
  Frame Frame1;
  ComboBox FrameRate;
  ComboBox Resolution;
  Label Label1;
  PictureBox Conv;  ///< Never shown: the size of the clip's pictures.
  CommonDialog Diag;

  /// The viewer; null once the host has released the player.
  std::shared_ptr<VideoServerPush> VS;
  /// Its place in the player.
  ChildControl VSPlace;

 private:
  void PlaceTools(PictureCodec& pictures);
  void PlaceTimeBoxes();
};

}  // namespace orbelcast
