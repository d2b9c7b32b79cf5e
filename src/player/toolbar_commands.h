#pragma once

#include <cstdint>

#include "player/archive_controls.h"
#include "player/full_screen_command.h"
#include "player/multiple_cameras.h"
#include "player/player_children.h"
#include "player/player_life.h"
#include "player/player_stream.h"
#include "player/server_commands.h"
#include "player/snapshot_command.h"
#include "player/toolbar.h"
#include "recording/clip_recorder.h"

namespace orbelcast {

/// The toolbar: runs the command of each of its buttons, and knows the last one.
class ToolbarCommands {
 public:
  /// The parts that the commands act on.
  struct Targets {
    PlayerStream& stream;
    ArchiveControls& archive;
    ClipRecorder& recorder;
    SnapshotCommand& snapshot;
    ServerCommands& server;
    FullScreenCommand& full_screen;
    MultipleCameras& cameras;
  };

  /// All outlive this object.
  ToolbarCommands(PlayerChildren& children, PlayerLife& life, const Targets& targets);
  ToolbarCommands(const ToolbarCommands&) = delete;
  ToolbarCommands& operator=(const ToolbarCommands&) = delete;

  /// Runs the command of a button, toolbar::kStop for instance. Any other number only runs the step before every
  /// command.
  void Player_Click(std::int16_t Index);
  /// Runs the last command again.
  void Repeat() { Player_Click(LastCommand); }

 private:
  PlayerChildren& children_;
  const PlayerLife& life_;
  Targets targets_;
  std::int16_t LastCommand = toolbar::kNone;
};

}  // namespace orbelcast
