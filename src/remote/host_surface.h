#pragma once

#include <cstdint>

#include "platform/device_contexts.h"
#include "toolkit/surface.h"

namespace orbelcast {

/// A surface of the host's own, lent to the controls for as long as it lives.
struct HostSurface {
  HostSurface(DeviceContexts& contexts, int width, int height)
      : device_contexts(contexts), surface(width, height), device_context(contexts.Add(surface)) {}
  ~HostSurface() { device_contexts.Remove(device_context); }
  HostSurface(const HostSurface&) = delete;
  HostSurface& operator=(const HostSurface&) = delete;

  DeviceContexts& device_contexts;
  Surface surface;
  std::int32_t device_context;
};

}  // namespace orbelcast
