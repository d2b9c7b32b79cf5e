#pragma once

#include <curl/curl.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "adapters/curl/http_address.h"
#include "adapters/curl/http_answer.h"
#include "adapters/curl/multiplexer.h"
#include "platform/http_request.h"

namespace orbelcast {

/// What stands behind a request object: one exchange after another on one easy handle.
///
/// The handle is kept while server and credentials stay the same, because it remembers the challenge it has answered;
/// only what changed since the last exchange is set again. Who waits for an answer keeps the exchange alive.
class Exchange final : public HttpRequest, public MultiplexedTransfer {
 public:
  explicit Exchange(std::shared_ptr<Multiplexer> multiplexer);
  ~Exchange() override;
  Exchange(const Exchange&) = delete;
  Exchange& operator=(const Exchange&) = delete;

  bool Open(std::string_view method, std::string_view url, bool async) override;
  bool SetRequestHeader(std::string_view name, std::string_view value) override;
  bool SetCredentials(std::string_view user_name, std::string_view password, int flags) override;
  bool SetTimeouts(int resolve, int connect, int send, int receive) override;
  bool LimitExchange(std::chrono::milliseconds limit) override;
  bool Send() override;
  bool WaitForResponse(std::optional<std::chrono::milliseconds> limit) override;
  int Status() override;
  std::string_view GetResponseHeader(std::string_view name) override { return Answer().Header(name); }
  std::string GetAllResponseHeaders() override { return Answer().Headers(); }
  std::string ResponseText() override { return std::string(Answer().BodyText()); }
  FrameBytes ResponseBody() override { return Answer().Body(); }
  void Abort() override;
  bool Failed() const override { return failed_; }

  CURL* Handle() override { return easy_.get(); }
  std::optional<EventQueue::Nanoseconds> Deadline() const override { return deadline_; }
  void Ended(CURLcode result) override;

 private:
  struct Credentials {
    std::string user_name;
    std::string password;
    bool operator==(const Credentials&) const = default;
  };
  struct Timeouts {
    int connect = 0;
    int receive = 0;
    bool operator==(const Timeouts&) const = default;
  };
  /// What one exchange is to be.
  struct Settings {
    std::string method;
    HttpAddress address;
    std::vector<std::pair<std::string, std::string>> headers;
    std::optional<Credentials> credentials;
    Timeouts timeouts;
  };
  using Url = std::unique_ptr<CURLU, decltype(&curl_url_cleanup)>;
  using Easy = std::unique_ptr<CURL, decltype(&curl_easy_cleanup)>;
  using HeaderList = std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)>;

  static std::size_t OnHeader(char* data, std::size_t size, std::size_t count, void* self);
  static std::size_t OnBody(char* data, std::size_t size, std::size_t count, void* self);
  static int OnConnected(void* self, char*, char*, int, int);

  /// The last complete answer since Open; an empty one where there is none.
  HttpAnswer& Answer() { return answered_ ? answer_ : no_answer_; }
  bool Refuse();
  bool Prepare(const Settings& settings);
  bool MakeHandle(const std::optional<Credentials>& credentials);
  bool SetAddress(const HttpAddress& address);
  bool SetMethod(const std::string& method);
  bool SetHeaders(const std::vector<std::pair<std::string, std::string>>& headers);
  enum class Redirect { kNone, kFollowed, kRefused };
  Redirect FollowRedirect();
  void End(bool answered);

  const std::shared_ptr<Multiplexer> multiplexer_;
  Easy easy_{nullptr, &curl_easy_cleanup};
  // Used by easy_ and therefore longer-lived than its transfers.
  HeaderList header_list_{nullptr, &curl_slist_free_all};
  Url odd_url_{nullptr, &curl_url_cleanup};
  Settings wanted_;
  Settings applied_;  // to easy_, where there is one
  std::string url_;   // as given to Open last, when it was accepted
  long redirects_left_ = http_limits::kMaxRedirects;
  bool async_ = false;
  bool opened_ = false;
  bool failed_ = false;

  HttpAnswer answer_;
  HttpAnswer no_answer_;
  bool answered_ = false;
  std::optional<std::chrono::milliseconds> limit_;  // of the next exchange as a whole
  std::optional<EventQueue::Nanoseconds> deadline_;
  bool sent_ = false;  // the request has gone out: the receive limit counts

  Completion ended_;
  bool awaited_ = false;  // an exchange is under way, or was dropped for one that is still to be sent
  int waiters_ = 0;
  std::uint64_t ends_ = 0;  // counts the exchanges that came to an end
};

}  // namespace orbelcast
