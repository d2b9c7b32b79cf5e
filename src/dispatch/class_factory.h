#pragma once

#include "dispatch/host_object.h"

namespace orbelcast::server {

/// Makes the controls of one class.
class ClassFactory final : public HostObject<IClassFactory> {
 public:
  using HostObject::HostObject;

  Result CreateInstance(IUnknown* outer, const Guid* id, void** object) override;
  Result LockServer(std::int32_t lock) override;
};

}  // namespace orbelcast::server
