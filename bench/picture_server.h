#pragma once

#include <sys/types.h>

#include <chrono>
#include <string>
#include <vector>

#include "platform/frame_bytes.h"

namespace orbelcast::bench {

/// A camera on 127.0.0.1 that takes the pictures given, one after another in a round, at an even rate. It is a process
/// of its own, whose CPU nobody counts, and ends with this object or with the thread that made it.
///
///   /stream      multipart/x-mixed-replace: each picture as it is taken; a client that is slow misses some
///   otherwise    the newest picture, one a request, on a connection that stays open
class PictureServer {
 public:
  /// `rate` in pictures a second. To be made before the process has threads: it forks.
  PictureServer(const std::vector<FrameBytes>& pictures, double rate);
  ~PictureServer();
  PictureServer(const PictureServer&) = delete;
  PictureServer& operator=(const PictureServer&) = delete;

  int Port() const { return port_; }
  std::string Url() const { return "http://127.0.0.1:" + std::to_string(port_) + "/picture"; }
  /// Picture n, counted from 0, is taken n / rate after this time.
  std::chrono::steady_clock::time_point Began() const { return began_; }

 private:
  std::chrono::steady_clock::time_point began_ = std::chrono::steady_clock::now();
  int port_ = 0;
  pid_t process_ = 0;
};

}  // namespace orbelcast::bench
