#pragma once

#include <cstddef>
#include <deque>
#include <fstream>
#include <mutex>
#include <string>
#include <string_view>

#include "camera_server/http_server.h"

namespace orbelcast::camera_server {

/// What clients asked, byte for byte, one JSON object a line: the newest in memory, and all of them in a file if there
/// is one. Requests for /control/ are not kept. Thread-safe.
class RequestLog {
 public:
  enum class Credentials { kMasked, kShown };
  /// `file` is written from its beginning; empty writes none. Throws std::runtime_error when it cannot be written.
  RequestLog(const std::string& file, Credentials credentials);

  /// `head` is what came from the method to the empty line, whether it makes a request or not.
  void Record(std::string_view head, const Client& client);
  /// The lines in memory, the oldest first, each with a line feed.
  std::string Lines(bool forgets_them = false);

 private:
  void Keep(std::string line);
  void Write(const std::string& line);

  const Credentials credentials_;
  std::mutex mutex_;
  std::deque<std::string> lines_;
  std::size_t kept_bytes_ = 0;
  std::ofstream file_;
  std::size_t written_bytes_ = 0;
};

}  // namespace orbelcast::camera_server
