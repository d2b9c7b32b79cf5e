#include "server/control_class.h"

namespace orbelcast::server {

namespace {

const ControlClass kClasses[] = {
    {kVideoServerPushClass, kVideoServerPushEvents, "VideoServerPush", "Orbelcast stream viewer",
     video_server_push_interface::Properties, video_server_push_interface::Methods, video_server_push_interface::Events,
     CreateVideoServerPush},
};

}  // namespace

std::span<const ControlClass> Classes() {
  return kClasses;
}

}  // namespace orbelcast::server
