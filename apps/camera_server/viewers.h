#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <mutex>

namespace orbelcast::camera_server {

/// Who watches which camera. A viewer is a connection that has lately asked for a picture of the camera. Thread-safe.
class Viewers {
 public:
  /// Notes that the client watches the camera now, and counts the camera's viewers.
  int Note(std::uint64_t client, int camera);
  void Remove(std::uint64_t client);

 private:
  using Clock = std::chrono::steady_clock;
  struct Watch {
    int camera;
    Clock::time_point last;
  };
  std::mutex mutex_;
  std::map<std::uint64_t, Watch> watches_;  // by client; no more than there are connections
};

}  // namespace orbelcast::camera_server
