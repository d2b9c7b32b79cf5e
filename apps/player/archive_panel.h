#pragma once

#include <QFrame>

#include "player/archive_extent.h"
#include "player/search_boxes.h"

class QCalendarWidget;
class QLabel;

namespace orbelcast {

class TimeLine;

/// A calendar and the time line of the day that is chosen in it, over the player's boxes: a click chooses the moment,
/// fills the boxes and searches. What is known of the archive can be seen in both.
class ArchivePanel final : public QFrame {
  Q_OBJECT

 public:
  /// `boxes` outlives the panel.
  ArchivePanel(SearchBoxes& boxes, QWidget* parent);

  /// Opens with the time of the boxes, its lower left corner at `corner` of the screen as far as that has room.
  void Open(const QPoint& corner);
  /// Shows what is known of the archive, and `text` instead where nothing is.
  void ShowExtent(const ArchiveExtent& extent, const QString& text);

 private:
  void FollowBoxes();
  void ShowTime(const QDateTime& time);
  void ShowDay();
  /// Days that have pictures are bold, all others grey; where nothing is known all are alike.
  void MarkDays();
  void ShowMoment();
  void Search();

  SearchBoxes& boxes_;
  ArchiveExtent extent_;
  QLabel* known_;
  QCalendarWidget* calendar_;
  TimeLine* line_;
  QLabel* moment_;
  /// The boxes tell what was found, no longer the pictures that happen to come.
  bool searched_ = false;
};

}  // namespace orbelcast
