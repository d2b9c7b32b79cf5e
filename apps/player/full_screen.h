#pragma once

#include <QLabel>
#include <QMainWindow>
#include <QString>
#include <functional>
#include <vector>

#include "orbelcast/player_widget.h"
#include "toolkit/signal.h"

namespace orbelcast {

/// A line over a picture that goes by itself: how to leave the full screen.
class Hint final : public QLabel {
  Q_OBJECT

 public:
  Hint(QWidget& over, const QString& text);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Place();

  static constexpr int kShownMilliseconds = 4000;
};

/// F11 shows a window over the whole screen and back again, with a hint how to leave.
class FullScreen final : public QObject {
  Q_OBJECT

 public:
  explicit FullScreen(QMainWindow& window);

  void Toggle() { window_.setWindowState(window_.windowState() ^ Qt::WindowFullScreen); }
  /// False where the window is not over the whole screen.
  bool Leave();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QMainWindow& window_;
};

/// The player's own full screen, of the picture alone: Escape and F11 leave it, too, as a press of a mouse button does,
/// and a hint says so.
class PictureFullScreen final : public QObject {
  Q_OBJECT

 public:
  /// `opened` is told the viewer each time that the screen opens; that ends with it.
  PictureFullScreen(PlayerWidget& player, std::function<void(VideoServerPushWidget&)> opened);

 private:
  Connection opened_;
};

}  // namespace orbelcast
