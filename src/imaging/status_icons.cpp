#include "imaging/status_icons.h"

namespace orbelcast {

namespace {

/// Top-left corners of the two cells on the strip, in pixels.
constexpr int kConnectionCellX = 5;
constexpr int kActivityCellX = 23;
constexpr int kCellY = 5;
/// Both corners of a cell belong to it, so it is 17 pixels wide.
constexpr int kCellSide = 16;

int CellX(StatusIcon icon) {
  return icon == StatusIcon::kRecording || icon == StatusIcon::kStop ? kActivityCellX : kConnectionCellX;
}

void EraseCell(Surface& strip, Color background, int x) {
  strip.FillBox(x, kCellY, x + kCellSide, kCellY + kCellSide, background);
}

}  // namespace

void PaintStatusIcon(Surface& strip, Color background, StatusIcon icon, const Surface& picture) {
  EraseCell(strip, background, CellX(icon));
  strip.Draw(picture, CellX(icon), kCellY);
}

void EraseActivityIcon(Surface& strip, Color background) {
  EraseCell(strip, background, kActivityCellX);
}

}  // namespace orbelcast
