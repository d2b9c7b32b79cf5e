#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "dispatch/control_server.h"
#include "orbelcast/orbelcast.h"
#include "remote/late_bound.h"

namespace orbelcast {

/// A control that this host made, and reaches by name as any late-bound host does. Destroying it releases the control,
/// also in the middle of an event of it.
class HostControl {
 public:
  /// Called with an event's name and its arguments under their names, in their order.
  using OnEvent = std::function<void(const std::string& event, Json arguments)>;

  /// Throws ScriptError where there is no such class.
  HostControl(server::ControlServer& server, const std::string& class_name, OnEvent on_event);
  ~HostControl();
  HostControl(const HostControl&) = delete;
  HostControl& operator=(const HostControl&) = delete;

  /// The class of that name; throws ScriptError where there is none.
  static const server::ControlClass& FindClass(const std::string& class_name);

  const server::ControlClass& Class() const { return class_; }
  LateBound Members() const { return LateBound(*control_.Get()); }
  void Place(float width, float height) { Check(site_->Place(width, height)); }
  void Load(const std::vector<std::pair<std::string, std::string>>& properties);
  void Hide() { Check(site_->Hide()); }

  /// The control itself, where it is of that class, else null.
  VideoServerPush* Viewer() const { return viewer_; }
  UserControl1* Player() const { return player_; }

 private:
  class Sink;

  void ListenTo(const server::Guid& events, OnEvent on_event);
  static void Check(server::Result result);

  const server::ControlClass& class_;
  server::Held<server::IDispatch> control_;
  server::Held<server::IControl> site_;
  // Both live until the control's last reference goes.
  VideoServerPush* viewer_ = nullptr;
  UserControl1* player_ = nullptr;
  server::Held<server::IConnectionPoint> point_;
  std::uint32_t cookie_ = 0;
};

}  // namespace orbelcast
