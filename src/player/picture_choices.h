#pragma once

#include "platform/registry.h"
#include "player/list_choice.h"
#include "player/player_children.h"
#include "player/player_life.h"
#include "player/player_stream.h"
#include "player/toolbar_commands.h"

namespace orbelcast {

/// The lists of frame rates and of picture sizes and qualities. The choices are kept in the registry.
class PictureChoices {
 public:
  /// The registry values that keep the choices, as list indexes in decimal.
  static constexpr Registry::Hive kSettingsHive = Registry::Hive::kLocalMachine;
  static constexpr const char* kSettingsKey = "Software\\Holmvane ORBELCAST";
  static constexpr const char* kFrameRateName = "FPS";
  static constexpr const char* kResolutionName = "Resolution";

  /// All outlive this object.
  PictureChoices(PlayerChildren& children, Registry& registry, PlayerLife& life, PlayerStream& stream,
                 ToolbarCommands& toolbar);

  /// Fills both lists and restores the kept choices.
  void Initialize();

 private:
  void FrameRate_Click();
  void Resolution_Click();

  PlayerChildren& children_;
  Registry& registry_;
  const PlayerLife& life_;
  PlayerStream& stream_;
  ToolbarCommands& toolbar_;
  ListChoice frame_rate_;
  ListChoice resolution_;
};

}  // namespace orbelcast
