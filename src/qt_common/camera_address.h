#pragma once

#include <QString>
#include <QTimer>
#include <functional>

#include "platform/platform.h"
#include "viewer/video_server_push.h"

namespace orbelcast {

/// The property `url` of a viewer's front end: the address of the camera that it is to show.
///
/// Setting it connects, or with an empty one disconnects, when the event loop runs next: so the properties that are set
/// with it hold for the connection. The newest word holds, whoever has it: what the host connects itself becomes the
/// address, and what was set just before and is not connected yet is forgotten. A connection that fails leaves the
/// address as it is; setting it once more tries again.
class CameraAddress {
 public:
  /// `platform` and `control` outlive the address. `changed` is called last, and may end the address.
  CameraAddress(Platform& platform, VideoServerPush& control, std::function<void()> changed);
  CameraAddress(const CameraAddress&) = delete;
  CameraAddress& operator=(const CameraAddress&) = delete;

  const QString& Get() const { return url_; }
  void Set(const QString& url);
  /// The host connects `url` itself; an empty one: it has disconnected, or shows several cameras. One that Connect
  /// ignores changes nothing.
  void Follow(const QString& url);

  /// The control was hidden, which stops its stream. An address that is set now waits until it is shown.
  void Hidden() { hidden_ = true; }
  /// It is shown again: an address that was set, unlike one that the host has connected, is connected once more.
  void Shown();
  /// From now on nothing is connected: a form is being designed.
  void Hold() { held_ = true; }

 private:
  void ConnectSoon();
  void Act();

  Platform& platform_;
  VideoServerPush& control_;
  const std::function<void()> changed_;
  QString url_;
  QString connected_;      // the newest address that a Connect was given, unless a Disconnect came after it
  bool declared_ = false;  // it was set, rather than connected by the host
  bool hidden_ = false;
  bool held_ = false;
  QTimer soon_;
};

}  // namespace orbelcast
