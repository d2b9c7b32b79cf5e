#pragma once

#include <QLabel>
#include <QTimer>

namespace orbelcast {

/// A line at the bottom of a window that tells what has just failed, for a while: over the window, so that nothing
/// moves. A click on it closes it.
class StatusLine final : public QLabel {
  Q_OBJECT

 public:
  explicit StatusLine(QWidget* parent);

  void Tell(const QString& text);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;

 private:
  void Place();

  QTimer shown_;
};

}  // namespace orbelcast
