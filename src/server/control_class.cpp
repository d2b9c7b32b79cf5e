#include "server/control_class.h"

#include "player/interface.h"

namespace orbelcast::server {

namespace {

std::span<const EventEntry> NoEvents() {
  return {};
}

const ControlClass kClasses[] = {
    {kVideoServerPushClass, kVideoServerPushEvents, "VideoServerPush", "Orbelcast stream viewer",
     video_server_push_interface::Properties, video_server_push_interface::Methods, video_server_push_interface::Events,
     CreateVideoServerPush},
    {kUserControl1Class, Guid{}, "UserControl1", "Orbelcast player", user_control1_interface::Properties,
     user_control1_interface::Methods, NoEvents, CreateUserControl1},
};

}  // namespace

std::span<const ControlClass> Classes() {
  return kClasses;
}

}  // namespace orbelcast::server
