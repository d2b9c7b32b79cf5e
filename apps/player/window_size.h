#pragma once

#include <QSize>
#include <QWidget>

#include "platform/screen.h"

namespace orbelcast {

/// Pixels: the first size of a player's window. It has room for a picture of 640 × 480 between the list of cameras and
/// the toolbar at 96 dots an inch, the same in inches on a finer screen, and is no larger than the screen of `window`.
QSize FirstPlayerSize(const QWidget& window, const Screen& screen);

/// Pixels: the smallest window of a player that has a toolbar; no larger than the screen either.
QSize LeastPlayerSize(const QWidget& window, const Screen& screen);

/// `size`, or what of it the screen of `window` has room for beside a frame.
QSize FittingScreen(const QWidget& window, const QSize& size);

}  // namespace orbelcast
