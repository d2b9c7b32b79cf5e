#include "qt_common/control_view.h"

#include <QDropEvent>
#include <QMimeData>

#include "toolkit/twips.h"

namespace orbelcast {

namespace {

Drop ToDrop(const QDropEvent& event, const Screen& screen) {
  Drop drop;
  for (const QString& format : event.mimeData()->formats()) {
    drop.data.formats.emplace_back(format.toStdString(), event.mimeData()->data(format).toStdString());
  }
  const Qt::KeyboardModifiers keys = event.modifiers();
  for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton}) {
    if (event.buttons().testFlag(button)) drop.button = static_cast<std::int16_t>(drop.button + ButtonNumber(button));
  }
  drop.shift = static_cast<std::int16_t>((keys.testFlag(Qt::ShiftModifier) ? 1 : 0) +
                                         (keys.testFlag(Qt::ControlModifier) ? 2 : 0) +
                                         (keys.testFlag(Qt::AltModifier) ? 4 : 0));
  drop.effect = event.proposedAction() == Qt::MoveAction ? 2 : 1;
  const TwipsScale scale = TwipsScale::Of(screen);
  drop.x = static_cast<float>(event.position().x() * scale.x);
  drop.y = static_cast<float>(event.position().y() * scale.y);
  return drop;
}

}  // namespace

QImage ViewOf(const Surface& surface, QImage::Format format) {
  if (surface.Empty()) return {};
  return {reinterpret_cast<const uchar*>(surface.Pixels().data()), surface.Width(), surface.Height(),
          surface.Width() * 4, format};
}

QImage ImageOf(Surface surface) {
  if (surface.Empty()) return {};
  auto* const kept = new Surface(std::move(surface));
  return {reinterpret_cast<const uchar*>(std::as_const(*kept).Pixels().data()),
          kept->Width(),
          kept->Height(),
          kept->Width() * 4,
          QImage::Format_RGB32,
          [](void* pixels) { delete static_cast<Surface*>(pixels); },
          kept};
}

std::pair<float, float> SizeInTwips(QSizeF pixels, const Screen& screen) {
  const TwipsScale scale = TwipsScale::Of(screen);
  return {scale.TwipsX(qRound(pixels.width())), scale.TwipsY(qRound(pixels.height()))};
}

QRect PlaceOf(const ChildControl& control, const Screen& screen) {
  const TwipsScale scale = TwipsScale::Of(screen);
  return {scale.PixelsX(control.Left), scale.PixelsY(control.Top), scale.PixelsX(control.Width),
          scale.PixelsY(control.Height)};
}

QFont SmallFont(const std::string& family) {
  constexpr double kSmallPoints = 8;
  QFont font(QString::fromStdString(family));
  font.setPointSizeF(kSmallPoints);
  return font;
}

std::int16_t ButtonNumber(Qt::MouseButton button) {
  switch (button) {
    case Qt::LeftButton:
      return kLeftButton;
    case Qt::RightButton:
      return kRightButton;
    case Qt::MiddleButton:
      return kMiddleButton;
    default:
      return 0;
  }
}

void HandOver(QDropEvent& event, const std::function<void(Drop&)>& on_drop, const Screen& screen) {
  if (!on_drop) return;
  Drop drop = ToDrop(event, screen);
  on_drop(drop);
  event.setDropAction(drop.effect == 0 ? Qt::IgnoreAction : drop.effect == 2 ? Qt::MoveAction : Qt::CopyAction);
  event.setAccepted(drop.effect != 0);
}

}  // namespace orbelcast
