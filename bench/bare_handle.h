#pragma once

#include <curl/curl.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace orbelcast::bench {

/// A libcurl handle as a program without any loop uses it: used again and again, it blocks until the answer is there.
class BareHandle {
 public:
  /// The size of one read, the same as the request object's.
  static constexpr long kReceiveBufferBytes = 64 * 1024;

  explicit BareHandle(const std::string& url) : easy_(curl_easy_init()) {
    curl_easy_setopt(easy_, CURLOPT_URL, url.c_str());
    curl_easy_setopt(easy_, CURLOPT_BUFFERSIZE, kReceiveBufferBytes);
    curl_easy_setopt(easy_, CURLOPT_WRITEFUNCTION, &OnBody);
    curl_easy_setopt(easy_, CURLOPT_WRITEDATA, this);
  }
  BareHandle(const BareHandle&) = delete;
  BareHandle& operator=(const BareHandle&) = delete;
  ~BareHandle() { curl_easy_cleanup(easy_); }

  /// Returns the size of the answer's body.
  std::size_t Ask() {
    body_.clear();
    if (curl_easy_perform(easy_) != CURLE_OK || body_.empty()) throw std::runtime_error("no answer");
    return body_.size();
  }

 private:
  static std::size_t OnBody(char* data, std::size_t size, std::size_t count, void* self) {
    auto& body = static_cast<BareHandle*>(self)->body_;
    body.insert(body.end(), data, data + size * count);
    return size * count;
  }
  CURL* easy_;
  std::vector<char> body_;
};

}  // namespace orbelcast::bench
