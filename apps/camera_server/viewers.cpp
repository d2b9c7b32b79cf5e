#include "viewers.h"

#include <algorithm>

namespace orbelcast::camera_server {

int Viewers::Note(std::uint64_t client, int camera) {
  // A stream slower than this is somebody looking now and then.
  constexpr std::chrono::seconds kForgottenAfter{10};
  const std::lock_guard lock(mutex_);
  const Clock::time_point now = Clock::now();
  watches_[client] = {.camera = camera, .last = now};
  return static_cast<int>(std::count_if(watches_.begin(), watches_.end(), [&](const auto& entry) {
    return entry.second.camera == camera && now - entry.second.last < kForgottenAfter;
  }));
}

void Viewers::Remove(std::uint64_t client) {
  const std::lock_guard lock(mutex_);
  watches_.erase(client);
}

}  // namespace orbelcast::camera_server
