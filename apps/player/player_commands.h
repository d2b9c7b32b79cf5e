#pragma once

#include <functional>
#include <vector>

#include "orbelcast/player_widget.h"
#include "player/key_commands.h"

namespace orbelcast {

/// The actions of the window around a player that the player's own buttons do not have.
struct PlayerWindowActions {
  std::function<void()> search_archive;
  std::function<void()> connect_again;
  std::function<void()> quit;
};

/// The commands of the player's window. Those of its buttons press them, whether the toolbar is shown or not. `player`
/// outlives them.
std::vector<KeyCommand> PlayerCommands(PlayerWidget& player, const PlayerWindowActions& actions);

}  // namespace orbelcast
