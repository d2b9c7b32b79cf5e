#include "player/proportions.h"

#include <QEvent>
#include <QPointer>
#include <utility>

#include "viewer/video_server_push.h"
#include "widgets/mirror.h"

namespace orbelcast {

Proportions::Proportions(VideoServerPushWidget& viewer, const Screen& screen, std::function<QRect()> area)
    : QObject(&viewer),
      viewer_(viewer),
      screen_(screen),
      area_(std::move(area)),
      bars_(new QWidget(viewer.parentWidget())) {
  QPalette black = bars_->palette();
  black.setColor(QPalette::Window, Qt::black);
  bars_->setPalette(black);
  bars_->setAutoFillBackground(true);
  bars_->stackUnder(&viewer);
  QObject::connect(&viewer, &QObject::destroyed, bars_, &QObject::deleteLater);
  // A child that is added to a window on the screen is not shown with it.
  bars_->show();
  place_.setSingleShot(true);
  QObject::connect(&place_, &QTimer::timeout, this, &Proportions::Place);
  VideoServerPush& control = viewer.Control();
  const auto on = [this](auto& property) {
    connections_.push_back(property.Changed.Connect([this](const auto&) { place_.start(0); }));
  };
  // The last picture's size, and the control's own.
  for (ChildControl* each : {static_cast<ChildControl*>(&control.BuffPic), static_cast<ChildControl*>(&control.Mira)}) {
    on(each->Width);
    on(each->Height);
  }
  on(control.VideoStream.Visible);
  on(control.MultiCam.Enabled);
  viewer.installEventFilter(this);
  viewer.parentWidget()->installEventFilter(this);
  place_.start(0);
}

void Proportions::Place() {
  const QRect area = area_();
  if (area.isEmpty()) return;
  has_shown_ = has_shown_ || viewer_.Control().VideoStream.Visible;
  bars_->setGeometry(area);
  viewer_.setGeometry(Wanted(area));
  const std::pair<float, float> size = SizeInTwips(viewer_, screen_);
  VideoServerPush& control = viewer_.Control();
  if (std::pair(control.Width(), control.Height()) == size) return;
  viewer_.RunHandler([viewer = QPointer(&viewer_), size] {
    if (viewer) viewer->Control().Resize(size.first, size.second);
  });
}

// Until the first picture there are no proportions to keep.
QRect Proportions::Wanted(const QRect& area) const {
  VideoServerPush& control = viewer_.Control();
  const QSizeF picture(control.BuffPic.Width, control.BuffPic.Height);
  if (!has_shown_) return area;
  if (control.MultiCam.Enabled || picture.isEmpty()) return area;
  QRect wanted(QPoint(), picture.scaled(area.size(), Qt::KeepAspectRatio).toSize().expandedTo({1, 1}));
  wanted.moveCenter(area.center());
  return wanted;
}

bool Proportions::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Resize || event->type() == QEvent::Move) place_.start(0);
  return QObject::eventFilter(watched, event);
}

}  // namespace orbelcast
