#include "widgets/picture_widgets.h"

#include <QBackingStore>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMouseEvent>
#include <QPainter>

#include "platform/jpeg_decoder.h"

namespace orbelcast {

namespace {

QColor ToQt(Color color) {
  return {RedOf(color), GreenOf(color), BlueOf(color)};
}

}  // namespace

DropWidget::DropWidget(ChildControl& control, std::function<void(Drop&)>& on_drop, const Screen& screen,
                       QWidget* parent)
    : QWidget(parent), on_drop_(on_drop), screen_(screen), mirror_(control, *this, screen) {
  setAcceptDrops(static_cast<bool>(on_drop));
}

void DropWidget::mousePressEvent(QMouseEvent* event) {
  mirror_.Press(event->button());
}

void DropWidget::dragEnterEvent(QDragEnterEvent* event) {
  event->acceptProposedAction();
}

void DropWidget::dropEvent(QDropEvent* event) {
  HandOver(*event, on_drop_, screen_);
}

PictureWidget::PictureWidget(PictureBox& box, const Screen& screen, QWidget* parent)
    : DropWidget(box, box.OnDrop, screen, parent), box_(box) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  Mirrored().Keep(box.Refreshed.Connect([this] { update(); }));
}

QImage PictureWidget::View() const {
  return ViewOf(box_.Image(), QImage::Format_RGB32);
}

// For a widget painted on its window, and as a whole but for rows at its bottom, which the status strip covers.
bool PictureWidget::PaintStraight(const QRect& part, int parts) {
  QPoint offset;
  QPaintDevice* const device = redirected(&offset);
  const bool on_window = device != nullptr && backingStore() != nullptr && device == backingStore()->paintDevice() &&
                         device->devType() == QInternal::Image && devicePixelRatioF() == 1;
  if (!on_window || parts != 1 || part.topLeft() != QPoint(0, 0) || part.width() != width()) return false;
  auto& window = static_cast<QImage&>(*device);
  const QRect place = part.translated(-offset);
  const bool known = window.format() == QImage::Format_RGB32 || window.format() == QImage::Format_ARGB32_Premultiplied;
  if (!known || !window.rect().contains(place)) return false;
  const qsizetype stride = window.bytesPerLine() / 4;
  auto* const first = reinterpret_cast<std::uint32_t*>(window.bits()) + place.y() * stride + place.x();
  return box_.Image().LookInto({first, width(), height(), part.height(), stride});
}

void PictureWidget::paintEvent(QPaintEvent* event) {
  if (PaintStraight(event->region().boundingRect(), event->region().rectCount())) return;
  QPainter painter(this);
  const Surface& surface = box_.Image();
  const QRect drawn(0, 0, surface.Width(), surface.Height());
  if (!drawn.contains(event->rect())) painter.fillRect(event->rect(), ToQt(box_.BackColor));
  if (const auto plain = surface.Plain()) {
    painter.fillRect(event->rect() & drawn, ToQt(*plain));
  } else {
    painter.drawImage(event->rect().topLeft(), View(), event->rect());
  }
}

ImageWidget::ImageWidget(Image& image, const Screen& screen, QWidget* parent)
    : DropWidget(image, image.OnDrop, screen, parent), image_(image) {
  Mirrored().Keep(image.PictureChanged.Connect([this] { update(); }));
}

void ImageWidget::paintEvent(QPaintEvent*) {
  const QImage view = ViewOf(image_.Picture(), QImage::Format_ARGB32);
  const QSize wanted = size() * devicePixelRatioF();
  if (view.isNull() || wanted.isEmpty()) return;
  // Not kept: while there is video it would take as much memory as a picture of it, unseen.
  QImage scaled = view.scaled(wanted, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  scaled.setDevicePixelRatio(devicePixelRatioF());
  QPainter(this).drawImage(0, 0, scaled);
}

}  // namespace orbelcast
