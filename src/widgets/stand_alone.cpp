// A widget that is made with nothing but a parent, by a host, by uic or by the loader of a form, gets its services
// here. All of an application share them.

#include <QCoreApplication>
#include <memory>

#include "orbelcast/player_widget.h"
#include "orbelcast/video_server_push_widget.h"
#include "widgets/qt_platform.h"

namespace orbelcast {

namespace {

std::shared_ptr<Platform> SharedPlatform() {
  if (QCoreApplication::instance() == nullptr) qFatal("Orbelcast: a widget needs a QApplication");
  // Never destroyed itself: a program may exit without its application's end.
  static auto& shared = *new std::shared_ptr<QtPlatform>;
  if (!shared) {
    shared = std::make_shared<QtPlatform>();
    // Ends just before the application does. A widget that outlives that keeps the services alive.
    qAddPostRoutine([] { shared.reset(); });
  }
  return {shared, &shared->Get()};
}

}  // namespace

VideoServerPushWidget::VideoServerPushWidget(QWidget* parent) : VideoServerPushWidget(SharedPlatform(), parent) {}

PlayerWidget::PlayerWidget(QWidget* parent) : PlayerWidget(SharedPlatform(), parent) {}

}  // namespace orbelcast
