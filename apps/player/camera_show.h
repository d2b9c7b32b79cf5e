#pragma once

#include <QObject>
#include <QString>
#include <QTimer>
#include <string>
#include <vector>

#include "orbelcast/video_server_push_widget.h"

namespace orbelcast {

/// A camera that is shown among others.
struct ShownCamera {
  std::string device;   ///< Its id on the server; may be empty.
  QString name;         ///< For people.
  std::string address;  ///< Its live address, with a login where it needs one, without the picture code.
};

/// Several cameras in one viewer: all as a grid, one alone, or one after the other. A double click on a tile shows that
/// camera alone, another one all again.
class CameraShow final : public QObject {
  Q_OBJECT

 public:
  static constexpr int kAll = -1;

  /// With `strip` a camera alone has its status strip. `viewer` owns this object.
  CameraShow(VideoServerPushWidget& viewer, bool strip);

  void Take(std::vector<ShownCamera> cameras);
  bool Empty() const { return cameras_.empty(); }
  int Count() const { return static_cast<int>(cameras_.size()); }
  /// The camera of that device id, in any letter case; kAll where there is none.
  int Find(const std::string& device) const;

  /// Shows a camera alone, or kAll; nothing where there is no such camera. Waits for its first answer.
  void Show(int camera);
  /// The camera that is shown, or kAll.
  int Shown() const { return shown_; }
  /// From now on shows the next camera after so many seconds, from the one that is shown then, round and round.
  void StartTour(double seconds);

  /// The name of the picture that is shown, for people.
  QString Name() const;
  /// The live address of the camera that is shown alone, else empty.
  std::string Address() const;

 Q_SIGNALS:
  /// Another one is shown from now on.
  void Changed();
  /// The choice runs, or has failed to begin.
  void Began();

 public Q_SLOTS:
  /// Show, as a handler.
  void Choose(int camera);

 private:
  VideoServerPushWidget& viewer_;
  const bool strip_;
  std::vector<ShownCamera> cameras_;
  int shown_ = kAll;
  int choices_ = 0;
  QTimer tour_;
};

}  // namespace orbelcast
