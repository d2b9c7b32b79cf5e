#pragma once

#include <memory>
#include <span>
#include <string_view>

#include "interface/member.h"
#include "orbelcast/orbelcast.h"
#include "platform/platform.h"
#include "player/user_control1.h"

namespace orbelcast::server {

/// One class of controls: its ids, its interface, and a container's calls. `control` is a control of the class.
struct ControlClass {
  Guid id;
  Guid events_id;  ///< Of its connection point, where it has events.
  const ControlInterface& interface;
  std::span<const MemberInfo> members;
  std::shared_ptr<void> (*create)(Platform& platform);
  void (*place)(void* control, float width, float height);
  void (*hide)(void* control);
  void (*load)(void* control, PropertyBag bag);
  VideoServerPushEvents* (*events)(void* control);  ///< Null where it has none.
};

/// Whether an object's sinks are told the control's events. A control that outlives its object raises nothing there.
enum class Raises { kEvents, kNothing };

std::span<const ControlClass> Classes();

/// The class of that name ("VideoServerPush"), letter by letter; null where there is none.
const ControlClass* FindClass(std::string_view name);
/// The class with that id; null where there is none.
const ControlClass* FindClass(const Guid& id);

}  // namespace orbelcast::server
