#include "player/tile_clicks.h"

#include <QMouseEvent>
#include <utility>

#include "mosaic/mosaic_tile.h"
#include "widgets/picture_widgets.h"

namespace orbelcast {

namespace {

int TileAt(const QPoint& at, const QSize& area, int cameras) {
  for (int index = 0; index < cameras; ++index) {
    const auto tile = PlaceTile(index, cameras, area.width(), area.height());
    if (tile && QRect(tile->x, tile->y, tile->width, tile->height).contains(at)) return index;
  }
  return -1;
}

}  // namespace

TileClicks::TileClicks(VideoServerPushWidget& viewer, std::function<int()> cameras)
    : QObject(&viewer), cameras_(std::move(cameras)) {
  // The picture, the test card in its place, and what is drawn over them; not the strip below.
  for (QWidget* part : viewer.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
    const bool is_strip = part->objectName() == QLatin1String("StatusDisplay");
    if (dynamic_cast<DropWidget*>(part) != nullptr && !is_strip) part->installEventFilter(this);
  }
}

bool TileClicks::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::MouseButtonDblClick) {
    const auto& click = static_cast<const QMouseEvent&>(*event);
    const QSize area = static_cast<const QWidget&>(*watched).size();
    if (click.button() == Qt::LeftButton) Q_EMIT DoubleClicked(TileAt(click.position().toPoint(), area, cameras_()));
  }
  return QObject::eventFilter(watched, event);
}

}  // namespace orbelcast
