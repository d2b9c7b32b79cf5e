#pragma once

#include <QIcon>
#include <QPalette>

#include "toolkit/surface.h"

namespace orbelcast {

/// A picture as an icon for every size and screen: its grey shapes in the palette's text colour, its coloured ones as
/// they are.
QIcon ThemedIcon(const Surface& picture, const QPalette& palette);

}  // namespace orbelcast
