#pragma once

#include <cstdint>
#include <map>

namespace orbelcast {

class Surface;

/// The surfaces that a host lends for drawing, each under the number of its device context.
class DeviceContexts {
 public:
  /// Gives `surface`, which stays the host's and where it is until Remove, a number (never 0).
  std::int32_t Add(Surface& surface) {
    surfaces_[++last_] = &surface;
    return last_;
  }
  void Remove(std::int32_t device_context) { surfaces_.erase(device_context); }

  /// The surface of that number; null where there is none.
  Surface* Find(std::int32_t device_context) const {
    const auto found = surfaces_.find(device_context);
    return found == surfaces_.end() ? nullptr : found->second;
  }

 private:
  std::map<std::int32_t, Surface*> surfaces_;
  std::int32_t last_ = 0;
};

}  // namespace orbelcast
