#pragma once

#include <QDate>
#include <QSlider>
#include <optional>
#include <utility>

#include "player/archive_extent.h"

namespace orbelcast {

/// A day of an archive from midnight to midnight: what lies between the archive's first and last picture is filled, and
/// a mark stands at the value, in seconds of the day. A click or drag chooses a time, or the arrows (a minute), Page Up
/// and Page Down (an hour), and Enter.
class TimeLine final : public QSlider {
  Q_OBJECT

 public:
  static constexpr int kSecondsOfDay = 86'400;

  explicit TimeLine(QWidget* parent = nullptr);

  /// The day that is shown, and what is known of the archive.
  void ShowDay(const QDate& day, const ArchiveExtent& extent);

  QTime Time() const { return QTime(0, 0).addSecs(value()); }

  QSize sizeHint() const override;

 Q_SIGNALS:
  /// A person has chosen the value.
  void Chosen();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QRect Bar() const;
  int SecondAt(int x) const;
  int PlaceOf(int second) const;
  void DrawHours(QPainter& painter) const;

  std::optional<std::pair<int, int>> filled_;  ///< Seconds of the day.
};

}  // namespace orbelcast
