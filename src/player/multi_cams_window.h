#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "player/player_life.h"
#include "toolkit/controls.h"

namespace orbelcast {

/// Chooses the cameras that are shown together.
struct MultiCamsWindow final : Window {
  /// Twips: its inner size.
  static constexpr float kDesignWidth = 4680;
  static constexpr float kDesignHeight = 3330;

  /// `life` outlives the window.
  explicit MultiCamsWindow(PlayerLife& life);

  ListBox Cameras;  ///< Several may be selected.
  Button Go;
  Button Bye;

  /// The live addresses of the chosen cameras, each followed by CR LF; stays readable after the window has closed.
  std::string SelectionResult;
  /// Keeps `d` as the live address of camera `X` of the list; a negative one is ignored.
  void CamerasMatrix(std::int16_t X, const std::string& d);

  std::vector<NamedChild> Children() override;

 protected:
  void Load() override;

 private:
  void Go_Click();
  void Bye_Click();

  std::vector<std::string> CameraMatrix;
};

}  // namespace orbelcast
