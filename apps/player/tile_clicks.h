#pragma once

#include <QObject>
#include <functional>

#include "orbelcast/video_server_push_widget.h"

namespace orbelcast {

/// Tells of double clicks on a viewer's picture, and on which tile of its grid.
class TileClicks final : public QObject {
  Q_OBJECT

 public:
  /// `cameras`: how many the grid has, 0 while there is none. `viewer` owns this object.
  TileClicks(VideoServerPushWidget& viewer, std::function<int()> cameras);

 Q_SIGNALS:
  /// On the tile, from 0; −1 where there is no grid, or no tile.
  void DoubleClicked(int tile);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  const std::function<int()> cameras_;
};

}  // namespace orbelcast
