#pragma once

#include <QDateTime>
#include <QLabel>
#include <QString>
#include <QWidget>
#include <optional>
#include <vector>

#include "orbelcast/video_server_push_widget.h"
#include "player/picture_age.h"
#include "toolkit/signal.h"

namespace orbelcast {

/// A few words on a dark ground, with a mark in a colour: readable on any picture.
class Badge final : public QLabel {
  Q_OBJECT

 public:
  enum class Mark { kLive, kArchive, kStopped, kRecording };

  explicit Badge(QWidget* parent);

  void Show(Mark mark, const QString& text);

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  /// Pixels, all of them in proportion to the text.
  int MarkSide() const;
  int Gap() const;

  Mark mark_ = Mark::kLive;
};

/// In the upper right corner of a viewer: whether its picture is live, of the archive, or stopped, and how long a clip
/// is that is being recorded. It goes by the pictures that came and by the state of the stream: of a picture that is
/// not what was chosen, or has become old, it says nothing.
class Badges final : public QWidget {
  Q_OBJECT

 public:
  /// `age` watches the same viewer, and lives as long as it.
  Badges(VideoServerPushWidget& viewer, const PictureAge& age);

  /// A clip is being recorded that is `seconds` long.
  void ShowRecording(int seconds);
  void EndRecording();

  /// When the newest picture was taken, by the server's clock; nothing where that is not known.
  const std::optional<QDateTime>& PictureTime() const { return time_; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Update();
  void Place();

  VideoServerPush& viewer_;
  const PictureAge& age_;
  Badge* state_;
  Badge* recording_;
  std::optional<QDateTime> time_;
  std::vector<Connection> connections_;
};

}  // namespace orbelcast
