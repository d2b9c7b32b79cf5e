#include "adapters/curl/easy_transfer.h"

#include <sys/socket.h>

#include <climits>
#include <limits>
#include <new>

#include "platform/http_request.h"

namespace orbelcast {

namespace {

// A frame is some tens of kilobytes: read in few pieces.
constexpr long kReceiveBufferBytes = 64 * 1024;

}  // namespace

EasyTransfer::EasyTransfer(const std::string& method, const HttpAddress& address, const HeaderLines& headers,
                           int connect_limit, TransferWatcher& watcher)
    : watcher_(watcher), parsed_origin_(address.parsed_origin) {
  if (!easy_) return;
  SetOptions();
  // libcurl takes 0 for its own default.
  curl_easy_setopt(easy_.get(), CURLOPT_CONNECTTIMEOUT_MS, connect_limit == 0 ? long{INT_MAX} : long{connect_limit});
  if (!SetRequest(method, address) || !SetHeaders(headers)) easy_.reset();
}

void EasyTransfer::SetOptions() {
  CURL* const easy = easy_.get();
  curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
  curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(easy, CURLOPT_PROXY, "");  // keeps the environment's away too
  curl_easy_setopt(easy, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
  curl_easy_setopt(easy, CURLOPT_BUFFERSIZE, kReceiveBufferBytes);
  // The longest length there is: a stream may announce any, but one that is no number fails.
  curl_easy_setopt(easy, CURLOPT_MAXFILESIZE_LARGE, std::numeric_limits<curl_off_t>::max());
  // An abort must not wait for a resolver thread that waits for a dead name server.
  curl_easy_setopt(easy, CURLOPT_QUICK_EXIT, 1L);
  curl_easy_setopt(easy, CURLOPT_HEADERFUNCTION, &OnHeader);
  curl_easy_setopt(easy, CURLOPT_HEADERDATA, this);
  curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &OnBody);
  curl_easy_setopt(easy, CURLOPT_WRITEDATA, this);
  curl_easy_setopt(easy, CURLOPT_OPENSOCKETFUNCTION, &OnSocket);
  curl_easy_setopt(easy, CURLOPT_OPENSOCKETDATA, this);
  curl_easy_setopt(easy, CURLOPT_PREREQFUNCTION, &OnConnected);
  curl_easy_setopt(easy, CURLOPT_PREREQDATA, this);
}

// The target is given apart from the address: of an address libcurl makes a target of its own choosing. The origin is
// given both as text and parsed: with one of them libcurl would make the other, which is a tenth of a request's cost.
bool EasyTransfer::SetRequest(const std::string& method, const HttpAddress& address) {
  CURL* const easy = easy_.get();
  if (method == "HEAD") {
    curl_easy_setopt(easy, CURLOPT_NOBODY, 1L);
  } else if (method != "GET" && curl_easy_setopt(easy, CURLOPT_CUSTOMREQUEST, method.c_str()) != CURLE_OK) {
    return false;
  }
  return curl_easy_setopt(easy, CURLOPT_URL, address.origin.c_str()) == CURLE_OK &&
         curl_easy_setopt(easy, CURLOPT_CURLU, parsed_origin_.get()) == CURLE_OK &&
         curl_easy_setopt(easy, CURLOPT_REQUEST_TARGET, address.target.c_str()) == CURLE_OK;
}

bool EasyTransfer::SetHeaders(const HeaderLines& headers) {
  for (const auto& [name, value] : headers) {
    // libcurl takes "name:" for "leave this header out" and "name;" for an empty one.
    const bool empty = value.find_first_not_of(' ') == std::string::npos;
    const std::string line = empty ? name + ";" : name + ": " + value;
    curl_slist* const longer = curl_slist_append(header_list_.get(), line.c_str());
    if (longer == nullptr) return false;
    static_cast<void>(header_list_.release());
    header_list_.reset(longer);
  }
  return curl_easy_setopt(easy_.get(), CURLOPT_HTTPHEADER, header_list_.get()) == CURLE_OK;
}

// A callback that takes less than it was given fails the transfer. No exception may pass through libcurl.
std::size_t EasyTransfer::OnHeader(char* data, std::size_t size, std::size_t count, void* self) {
  try {
    return static_cast<EasyTransfer*>(self)->watcher_.TakeHeaderLine({data, size * count}) ? size * count : 0;
  } catch (const std::bad_alloc&) {
    return 0;
  }
}

std::size_t EasyTransfer::OnBody(char* data, std::size_t size, std::size_t count, void* self) {
  auto& transfer = *static_cast<EasyTransfer*>(self);
  curl_off_t announced = -1;
  curl_easy_getinfo(transfer.Handle(), CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &announced);
  try {
    return transfer.watcher_.TakeBody({data, size * count}, announced) ? size * count : 0;
  } catch (const std::bad_alloc&) {
    return 0;
  }
}

// libcurl tells nothing between a name's look-up and the connection; that it wants a socket is what shows that the name
// is known.
curl_socket_t EasyTransfer::OnSocket(void* self, curlsocktype, curl_sockaddr* address) {
  static_cast<EasyTransfer*>(self)->watcher_.Connecting();
  return socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
}

int EasyTransfer::OnConnected(void* self, char*, char*, int, int) {
  static_cast<EasyTransfer*>(self)->watcher_.Sending();
  return CURL_PREREQFUNC_OK;
}

}  // namespace orbelcast
