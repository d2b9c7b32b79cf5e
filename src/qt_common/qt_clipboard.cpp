#include "qt_common/qt_clipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <cstring>

#include "qt_common/control_view.h"

namespace orbelcast {

void QtClipboard::Clear() {
  QGuiApplication::clipboard()->clear();
}

void QtClipboard::SetPicture(const Surface& picture) {
  if (picture.Empty()) return;
  QGuiApplication::clipboard()->setImage(ViewOf(picture, QImage::Format_RGB32).copy());
}

Surface QtClipboard::Picture() const {
  const QImage image = QGuiApplication::clipboard()->image().convertToFormat(QImage::Format_RGB32);
  Surface surface(image.width(), image.height());
  if (surface.Empty()) return surface;
  auto* row = surface.MutablePixels().data();
  for (int y = 0; y < image.height(); ++y, row += image.width()) {
    std::memcpy(row, image.constScanLine(y), static_cast<std::size_t>(image.width()) * 4);
  }
  return surface;
}

}  // namespace orbelcast
