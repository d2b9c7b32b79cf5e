#pragma once

#include <curl/curl.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "adapters/curl/http_address.h"

namespace orbelcast {

using HeaderLines = std::vector<std::pair<std::string, std::string>>;

/// Receives the parts of a transfer while it runs. Called inside libcurl: nothing here may begin, end or drop a
/// transfer.
class TransferWatcher {
 public:
  virtual ~TransferWatcher() = default;
  /// The server's name is known, and one of its addresses is tried.
  virtual void Connecting() = 0;
  /// There is a connection, and the request goes out now.
  virtual void Sending() = 0;
  /// A line of a header block, the empty one at its end included. False ends the transfer.
  virtual bool TakeHeaderLine(std::string_view line) = 0;
  /// A part of the body. `announced`: its whole length, −1 where the server did not say. False ends the transfer.
  virtual bool TakeBody(std::string_view part, std::int64_t announced) = 0;
};

/// One request and its answer, on an easy handle of its own.
///
/// A handle is used once: at the start of a second transfer libcurl 7.88 frees the headers of the first, keeps a
/// pointer to the last of them, and writes through it where the new answer's first header line begins with a blank.
/// Connections, which are worth keeping, belong to the multi handle.
///
/// A request goes out as it was asked for, with nothing added: no proxy, cookie, .netrc or compression from anywhere.
/// libcurl follows no redirect and answers no login: either would be a second transfer.
class EasyTransfer {
 public:
  /// `connect_limit`: milliseconds that looking up the name and connecting may take together; 0 is no limit. The
  /// watcher must outlive the transfer.
  EasyTransfer(const std::string& method, const HttpAddress& address, const HeaderLines& headers, int connect_limit,
               TransferWatcher& watcher);

  /// Null where there is not memory enough.
  CURL* Handle() { return easy_.get(); }

 private:
  static std::size_t OnHeader(char* data, std::size_t size, std::size_t count, void* self);
  static std::size_t OnBody(char* data, std::size_t size, std::size_t count, void* self);
  static curl_socket_t OnSocket(void* self, curlsocktype purpose, curl_sockaddr* address);
  static int OnConnected(void* self, char*, char*, int, int);

  void SetOptions();
  bool SetRequest(const std::string& method, const HttpAddress& address);
  bool SetHeaders(const HeaderLines& headers);

  TransferWatcher& watcher_;
  const std::shared_ptr<CURLU> parsed_origin_;  // libcurl uses it until the transfer ends
  std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)> header_list_{nullptr, &curl_slist_free_all};
  std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> easy_{curl_easy_init(), &curl_easy_cleanup};
};

}  // namespace orbelcast
