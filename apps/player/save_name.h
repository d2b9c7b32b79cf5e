#pragma once

#include <QString>

#include "orbelcast/player_widget.h"
#include "player/badges.h"

namespace orbelcast {

/// A name for a picture or a clip of `player`, saved now: the camera and the picture's time.
QString SaveName(PlayerWidget& player, const QString& camera, const Badges& badges);

}  // namespace orbelcast
