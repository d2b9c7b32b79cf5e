#pragma once

#include <QRect>
#include <QTimer>
#include <functional>
#include <vector>

#include "orbelcast/video_server_push_widget.h"
#include "platform/screen.h"
#include "toolkit/signal.h"

namespace orbelcast {

/// Keeps a viewer's picture in its own proportions: the viewer, which stretches its picture, is as large as the picture
/// can be and stands in the middle of its area; the rest are black bars. Several cameras together fill the area.
class Proportions final : public QObject {
  Q_OBJECT

 public:
  /// `area`: the viewer's, in pixels of its parent, whatever size the viewer has. `screen` outlives the viewer.
  Proportions(VideoServerPushWidget& viewer, const Screen& screen, std::function<QRect()> area);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Place();
  QRect Wanted(const QRect& area) const;

  VideoServerPushWidget& viewer_;
  const Screen& screen_;
  const std::function<QRect()> area_;
  QWidget* bars_;
  QTimer place_;  ///< Once for all that changes together.
  bool has_shown_ = false;
  std::vector<Connection> connections_;
};

}  // namespace orbelcast
