#include "qt_common/camera_address.h"

#include <utility>

#include "qt_common/qt_texts.h"

namespace orbelcast {

CameraAddress::CameraAddress(Platform& platform, VideoServerPush& control, std::function<void()> changed)
    : platform_(platform), control_(control), changed_(std::move(changed)) {
  soon_.setSingleShot(true);
  QObject::connect(&soon_, &QTimer::timeout, [this] { Act(); });
}

void CameraAddress::Set(const QString& url) {
  declared_ = true;
  const bool has_ended = !url.isEmpty() && control_.URL().empty();
  if (url == url_ && !has_ended) return;
  ConnectSoon();
  if (std::exchange(url_, url) != url) changed_();
}

void CameraAddress::Follow(const QString& url) {
  if (!url.isEmpty() && !url.startsWith(QLatin1String("http://"), Qt::CaseInsensitive)) return;
  soon_.stop();
  declared_ = false;
  connected_ = url;
  if (std::exchange(url_, url) != url) changed_();
}

void CameraAddress::Shown() {
  if (std::exchange(hidden_, false) && declared_) ConnectSoon();
}

void CameraAddress::ConnectSoon() {
  if (!held_) soon_.start(0);
}

void CameraAddress::Act() {
  const bool nothing_to_end = url_.isEmpty() && connected_.isEmpty();
  if (nothing_to_end || (hidden_ && !url_.isEmpty())) return;
  connected_ = url_;
  // As a handler: the loop goes on while the camera is asked.
  platform_.loop.RunHandler(
      [&control = control_, url = FromText(url_)] { url.empty() ? control.Disconnect() : control.Connect(url); });
}

}  // namespace orbelcast
