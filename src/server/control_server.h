#pragma once

#include <functional>
#include <string_view>

#include "assembly/headless_platform.h"
#include "orbelcast/orbelcast.h"

/// The in-process control server: class factories, late-bound controls and event sinks over the interface tables.
///
/// `orbelcast/orbelcast.h` is what hosts see of it. One mechanism serves every class; what differs between them stands
/// in their ControlClass.
namespace orbelcast::server {

/// The classes, the platform that their controls run on, and the count of what is alive.
///
/// Outlives every object that it made. A program that links this room makes one of its own; the library's entry points
/// make one for whoever loaded it.
class ControlServer {
 public:
  /// Controls ask nobody: every dialog is cancelled.
  ControlServer();
  /// Controls ask `dialogs`, which outlives the server.
  explicit ControlServer(Dialogs& dialogs);
  ~ControlServer();
  ControlServer(const ControlServer&) = delete;
  ControlServer& operator=(const ControlServer&) = delete;

  /// Gives the class factory of `class_id`, as the entry point does.
  Result GetClassObject(const Guid* class_id, const Guid* interface_id, void** object);

  Platform& GetPlatform() { return platform_.Get(); }

 private:
  HeadlessPlatform platform_;
};

/// The class of that name ("VideoServerPush"), letter by letter; null where there is none.
const Guid* FindClass(std::string_view name);

}  // namespace orbelcast::server
