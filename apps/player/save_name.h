#pragma once

#include <QString>

#include "orbelcast/player_widget.h"
#include "player/badges.h"

namespace orbelcast {

/// What a picture or a clip of `player`, saved now, may be called: the camera and the picture's time.
QString SaveName(PlayerWidget& player, const QString& camera, const Badges& badges);

}  // namespace orbelcast
