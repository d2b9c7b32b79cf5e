#pragma once

#include <QTimer>
#include <QWidget>
#include <chrono>
#include <functional>
#include <string>

#include "player/notice.h"
#include "toolkit/signal.h"
#include "viewer/video_server_push.h"

namespace orbelcast {

/// Says when the picture on the screen is not what was chosen, or has become old: a notice tells what is waited for,
/// and the picture is dimmed until the next one comes. It goes by the pictures that came, not by the state of the
/// stream.
class PictureAge final : public QObject {
  Q_OBJECT

 public:
  /// The shortest age that is told; at a low rate it is five times as long as the pictures' distance.
  static constexpr std::chrono::milliseconds kOld{3000};

  /// `window` has the picture of `viewer` and the notice; `camera` names the one that is asked for.
  PictureAge(QWidget& window, VideoServerPush& viewer, Notice& notice, std::function<QString()> camera);

  /// Whether the picture on the screen is the one that was chosen, and no older than it should be.
  bool PictureIsTrue() const { return !asked_.empty() && asked_ == shown_ && told_.isEmpty(); }

 Q_SIGNALS:
  /// Several times a second: the answers above may have changed.
  void Looked();

 private:
  using Clock = std::chrono::steady_clock;

  void NotePicture();
  void Look();
  /// The text to tell; empty where the picture is the one that was chosen, and new.
  QString WhatIsWrong() const;
  void Tell(const QString& wrong);

  VideoServerPush& viewer_;
  Notice& notice_;
  const std::function<QString()> camera_;
  QWidget* veil_;
  QTimer looks_;
  QString told_;

  std::string asked_;  ///< The address at the last look, and since when.
  Clock::time_point asked_at_;
  std::string shown_;  ///< The address of the newest picture, and when that came.
  Clock::time_point shown_at_;
  Connection pictures_;
};

}  // namespace orbelcast
