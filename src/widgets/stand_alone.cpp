// A widget that is made with nothing but a parent, by a host, by uic or by the loader of a form, gets its services
// here. All of an application share them.

#include "orbelcast/player_widget.h"
#include "orbelcast/video_server_push_widget.h"
#include "widgets/qt_platform.h"

namespace orbelcast {

VideoServerPushWidget::VideoServerPushWidget(QWidget* parent)
    : VideoServerPushWidget(SharedPlatform<QtPlatform>(), parent) {}

PlayerWidget::PlayerWidget(QWidget* parent) : PlayerWidget(SharedPlatform<QtPlatform>(), parent) {}

}  // namespace orbelcast
