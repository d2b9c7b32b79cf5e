#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "late_bound.h"
#include "orbelcast/orbelcast.h"
#include "server/control_access.h"
#include "server/control_server.h"

namespace orbelcast {

/// A control that this host made through the control server's class factory. Destroying it releases the control, also
/// in the middle of an event of it.
class HostControl {
 public:
  /// What is told of an event: its name, and its arguments under their names, in their order.
  using OnEvent = std::function<void(const std::string& event, Json arguments)>;

  /// Throws ScriptError where there is no such class.
  HostControl(server::ControlServer& server, const std::string& class_name, OnEvent on_event);
  ~HostControl();
  HostControl(const HostControl&) = delete;
  HostControl& operator=(const HostControl&) = delete;

  /// The class factory; throws ScriptError where there is no such class.
  static server::Held<server::IClassFactory> Factory(server::ControlServer& server, const std::string& class_name);

  LateBound Members() const { return LateBound(*control_.Get()); }
  void Place(float width, float height) { Check(site_->Place(width, height)); }
  void Load(const std::vector<std::pair<std::string, std::string>>& properties);
  void Hide() { Check(site_->Hide()); }

  /// The C++ control behind it, where it is of that class, else null.
  VideoServerPush* Viewer() const { return access_->Viewer(); }
  UserControl1* Player() const { return access_->Player(); }

 private:
  class Sink;

  void ListenTo(const server::Guid& events, OnEvent on_event);
  static void Check(server::Result result);

  server::Held<server::IDispatch> control_;
  server::Held<server::IControl> site_;
  server::Held<server::IControlAccess> access_;
  server::Held<server::IConnectionPoint> point_;
  std::uint32_t cookie_ = 0;
};

}  // namespace orbelcast
