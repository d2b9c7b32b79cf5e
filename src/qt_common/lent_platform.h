#pragma once

#include <memory>

#include "platform/platform.h"

namespace orbelcast {

/// Services that outlive their holder.
inline std::shared_ptr<Platform> Lent(Platform& platform) {
  return {std::shared_ptr<void>(), &platform};
}

}  // namespace orbelcast
