#pragma once

#include "orbelcast/orbelcast.h"

namespace orbelcast {

class UserControl1;
class VideoServerPush;
struct Platform;

namespace server {

/// What a program that links the controls finds behind a control's other interfaces: the C++ object itself.
struct IControlAccess : IUnknown {
  static constexpr Guid kId{0x30bfe3d1, 0x0197, 0x4f6f, {0xb8, 0xd9, 0xe4, 0xbe, 0x34, 0xb0, 0x20, 0xce}};

  /// The control, where it is of that class, else null. Lives until the control's last Release.
  virtual VideoServerPush* Viewer() = 0;
  virtual UserControl1* Player() = 0;
  /// The services that the control runs on.
  virtual Platform& GetPlatform() = 0;

 protected:
  ~IControlAccess() = default;
};

}  // namespace server
}  // namespace orbelcast
