#include "widgets/themed_icon.h"

#include <algorithm>
#include <array>

#include "widgets/picture_widgets.h"

namespace orbelcast {

namespace {

/// Pixels of an icon's side that a button may ask for, on screens of one or more dots a pixel; pictures that are scaled
/// beforehand are sharper than those scaled while they are painted.
constexpr std::array kIconSides{16, 20, 24, 32, 40, 48, 64};

/// A grey's three parts differ by less than this; above it, the colour counts as one the more, the more they differ.
constexpr double kChromaOfColour = 0.25;

QRgb Themed(QRgb pixel, QRgb text) {
  const int highest = std::max({qRed(pixel), qGreen(pixel), qBlue(pixel)});
  const int lowest = std::min({qRed(pixel), qGreen(pixel), qBlue(pixel)});
  const double grey = std::max(0.0, 1 - (highest - lowest) / 255.0 / kChromaOfColour);
  const auto mix = [grey](int from, int to) { return qRound(from + (to - from) * grey); };
  return qRgba(mix(qRed(pixel), qRed(text)), mix(qGreen(pixel), qGreen(text)), mix(qBlue(pixel), qBlue(text)),
               qAlpha(pixel));
}

}  // namespace

QIcon ThemedIcon(const Surface& picture, const QPalette& palette) {
  QImage image = ViewOf(picture, QImage::Format_ARGB32).copy();
  if (image.isNull()) return {};
  const QRgb text = palette.color(QPalette::ButtonText).rgb();
  for (int y = 0; y < image.height(); ++y) {
    auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
    std::transform(row, row + image.width(), row, [text](QRgb pixel) { return Themed(pixel, text); });
  }
  QIcon icon;
  for (const int side : kIconSides) {
    icon.addPixmap(QPixmap::fromImage(image.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation)));
  }
  return icon;
}

}  // namespace orbelcast
