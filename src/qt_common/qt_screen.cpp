#include "qt_common/qt_screen.h"

#include <QGuiApplication>
#include <QScreen>

namespace orbelcast {

namespace {

constexpr double kTwipsPerInch = 1440;

int TwipsPerPixel(double dots_per_inch) {
  return dots_per_inch > 0 ? qMax(1, qRound(kTwipsPerInch / dots_per_inch)) : Screen().TwipsPerPixelX();
}

}  // namespace

int QtScreen::TwipsPerPixelX() const {
  const QScreen* screen = QGuiApplication::primaryScreen();
  return screen != nullptr ? TwipsPerPixel(screen->logicalDotsPerInchX()) : Screen::TwipsPerPixelX();
}

int QtScreen::TwipsPerPixelY() const {
  const QScreen* screen = QGuiApplication::primaryScreen();
  return screen != nullptr ? TwipsPerPixel(screen->logicalDotsPerInchY()) : Screen::TwipsPerPixelY();
}

int QtScreen::Width() const {
  const QScreen* screen = QGuiApplication::primaryScreen();
  return screen != nullptr ? screen->size().width() : Screen::Width();
}

int QtScreen::Height() const {
  const QScreen* screen = QGuiApplication::primaryScreen();
  return screen != nullptr ? screen->size().height() : Screen::Height();
}

}  // namespace orbelcast
