#include "dispatch/control_class.h"

#include <algorithm>
#include <utility>

#include "dispatch/member_table.h"
#include "interface/user_control1_interface.h"
#include "interface/video_server_push_interface.h"

namespace orbelcast::server {

namespace {

VideoServerPush& Viewer(void* control) {
  return *static_cast<VideoServerPush*>(control);
}
UserControl1& Player(void* control) {
  return *static_cast<UserControl1*>(control);
}

const ControlClass kClasses[] = {
    {.id = kVideoServerPushClass,
     .events_id = kVideoServerPushEvents,
     .interface = interface::kVideoServerPush,
     .members = MemberTable<interface::kVideoServerPush>::kMembers,
     .create = [](Platform& platform) -> std::shared_ptr<void> { return VideoServerPush::Create(platform); },
     .place = [](void* control, float width, float height) { Viewer(control).Resize(width, height); },
     .hide = [](void* control) { Viewer(control).UserControl_Hide(); },
     .load = [](void*, PropertyBag) {},
     .events = [](void* control) { return &Viewer(control).Events; }},
    {.id = kUserControl1Class,
     .events_id = {},
     .interface = interface::kUserControl1,
     .members = MemberTable<interface::kUserControl1>::kMembers,
     .create = [](Platform& platform) -> std::shared_ptr<void> { return UserControl1::Create(platform); },
     .place = [](void* control, float width, float height) { Player(control).Resize(width, height); },
     // A container that hides the player hides the viewer in it.
     .hide = [](void* control) { Player(control).VS->UserControl_Hide(); },
     .load = [](void* control, PropertyBag bag) { Player(control).ReadProperties(std::move(bag)); },
     .events = [](void*) -> VideoServerPushEvents* { return nullptr; }},
};

template <typename Matches>
const ControlClass* FindWhere(Matches matches) {
  const auto* const found = std::find_if(std::begin(kClasses), std::end(kClasses), matches);
  return found == std::end(kClasses) ? nullptr : found;
}

}  // namespace

std::span<const ControlClass> Classes() {
  return kClasses;
}

const ControlClass* FindClass(std::string_view name) {
  return FindWhere([&](const ControlClass& each) { return each.interface.name == name; });
}

const ControlClass* FindClass(const Guid& id) {
  return FindWhere([&](const ControlClass& each) { return each.id == id; });
}

}  // namespace orbelcast::server
