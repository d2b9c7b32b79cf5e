#include "player/window_size.h"

#include <QScreen>
#include <QStyle>

#include "player/player_layout.h"
#include "toolkit/twips.h"

namespace orbelcast {

namespace {

constexpr float kFirstWidthTwips = 9600;
constexpr float kFirstHeightTwips = 9270;
/// Pixels: a window's frame at its left and right.
constexpr int kFrameSides = 16;

QSize InPixels(float width, float height, const Screen& screen) {
  const TwipsScale scale = TwipsScale::Of(screen);
  return {scale.PixelsX(width), scale.PixelsY(height)};
}

}  // namespace

QSize FittingScreen(const QWidget& window, const QSize& size) {
  const int title = window.style()->pixelMetric(QStyle::PM_TitleBarHeight);
  return size.boundedTo(window.screen()->availableSize() - QSize(kFrameSides, title + kFrameSides));
}

QSize FirstPlayerSize(const QWidget& window, const Screen& screen) {
  return FittingScreen(window, InPixels(kFirstWidthTwips, kFirstHeightTwips, screen));
}

QSize LeastPlayerSize(const QWidget& window, const Screen& screen) {
  const QSize largest_without = InPixels(PlayerLayout::kToolbarNeedsWidth, PlayerLayout::kToolbarNeedsHeight, screen);
  return FittingScreen(window, largest_without + QSize(1, 1));
}

}  // namespace orbelcast
