#include "adapters/curl/exchange.h"

#include <algorithm>
#include <climits>

#include "platform/ascii.h"

namespace orbelcast {

namespace {

// A frame is some tens of kilobytes: read in few pieces.
constexpr long kReceiveBufferBytes = 64 * 1024;

// libcurl takes 0 for its own default.
long ConnectLimit(int milliseconds) {
  return milliseconds == 0 ? INT_MAX : milliseconds;
}

int SumOfLimits(int a, int b) {
  if (a == 0 || b == 0) return 0;
  return a > INT_MAX - b ? INT_MAX : a + b;
}

}  // namespace

Exchange::Exchange(std::shared_ptr<Multiplexer> multiplexer) : multiplexer_(std::move(multiplexer)) {}

Exchange::~Exchange() {
  multiplexer_->Drop(*this);
}

bool Exchange::Refuse() {
  failed_ = true;
  return false;
}

bool Exchange::Open(std::string_view method, std::string_view url, bool async) {
  multiplexer_->Drop(*this);
  awaited_ = awaited_ && waiters_ > 0;
  failed_ = false;
  answered_ = false;
  answer_.Clear();
  wanted_.headers.clear();
  wanted_.credentials.reset();
  limit_.reset();
  opened_ = false;
  if (!IsHttpToken(method)) return Refuse();
  if (url != url_ || url_.empty()) {
    auto address = HttpAddress::Parse(url);
    if (!address) return Refuse();
    wanted_.address = std::move(*address);
    url_ = url;
  }
  wanted_.method = method;
  async_ = async;
  opened_ = true;
  return true;
}

bool Exchange::SetRequestHeader(std::string_view name, std::string_view value) {
  if (!opened_ || !IsHttpToken(name) || HasControlCharacter(value)) return Refuse();
  const auto present = std::ranges::find_if(
      wanted_.headers, [name](const auto& header) { return EqualIgnoringCase(header.first, name); });
  if (present != wanted_.headers.end()) {
    present->second = value;
  } else {
    wanted_.headers.emplace_back(name, value);
  }
  return true;
}

bool Exchange::SetCredentials(std::string_view user_name, std::string_view password, int flags) {
  if (!opened_ || flags != 0 || HasControlCharacter(user_name) || HasControlCharacter(password)) return Refuse();
  wanted_.credentials = {std::string(user_name), std::string(password)};
  return true;
}

bool Exchange::SetTimeouts(int resolve, int connect, int send, int receive) {
  if (resolve < 0 || connect < 0 || send < 0 || receive < 0) return Refuse();
  // A request without a body is sent in one piece as soon as there is a connection: `send` has nothing to bound.
  wanted_.timeouts = {SumOfLimits(resolve, connect), receive};
  return true;
}

bool Exchange::LimitExchange(std::chrono::milliseconds limit) {
  if (!opened_ || limit.count() <= 0) return Refuse();
  limit_ = limit;
  return true;
}

bool Exchange::Send() {
  if (!opened_ || multiplexer_->IsUnderWay(*this)) return Refuse();
  redirects_left_ = http_limits::kMaxRedirects;
  if (!Prepare(wanted_)) return Refuse();
  answered_ = false;
  answer_.Clear();
  deadline_.reset();
  if (MessageLoop* const loop = multiplexer_->Loop(); loop != nullptr && limit_) {
    deadline_ = loop->Queue().Now() + *limit_;
  }
  sent_ = false;
  ended_.Reset();
  awaited_ = true;
  if (!multiplexer_->Begin(*this)) {
    End(false);
    return false;
  }
  if (async_) return true;
  multiplexer_->Block(*this);
  return answered_;
}

bool Exchange::WaitForResponse(std::optional<std::chrono::milliseconds> limit) {
  MessageLoop* const loop = multiplexer_->Loop();
  if (loop != nullptr && awaited_) {
    EventQueue& queue = loop->Queue();
    EventQueue::TimerId timer = 0;
    if (limit)
      timer = queue.ArmTimer(*limit, [this, &timer] {
        timer = 0;
        Abort();
      });
    ++waiters_;
    while (awaited_) {
      const std::uint64_t ends = ends_;
      loop->Wait(ended_);
      if (ends == ends_) break;  // the loop is being destroyed
    }
    --waiters_;
    if (timer != 0) queue.CancelTimer(timer);
  }
  return answered_ || Refuse();
}

int Exchange::Status() {
  if (!answered_) failed_ = true;
  return Answer().Status();
}

void Exchange::Abort() {
  multiplexer_->Drop(*this);
  if (awaited_) End(false);
}

void Exchange::Ended(CURLcode result) {
  const bool answered = result == CURLE_OK && answer_.Status() > 0;
  const Redirect redirect = answered ? FollowRedirect() : Redirect::kNone;
  if (redirect != Redirect::kFollowed) End(answered && redirect == Redirect::kNone);
}

void Exchange::End(bool answered) {
  answered_ = answered;
  if (!answered) failed_ = true;
  awaited_ = false;
  ++ends_;
  ended_.Complete();
}

// A callback that takes less than it was given fails the transfer. No exception may pass through libcurl.
std::size_t Exchange::OnHeader(char* data, std::size_t size, std::size_t count, void* self) {
  try {
    return static_cast<Exchange*>(self)->answer_.TakeHeaderLine({data, size * count}) ? size * count : 0;
  } catch (const std::bad_alloc&) {
    return 0;
  }
}

std::size_t Exchange::OnBody(char* data, std::size_t size, std::size_t count, void* self) {
  auto& exchange = *static_cast<Exchange*>(self);
  curl_off_t announced = -1;
  curl_easy_getinfo(exchange.easy_.get(), CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &announced);
  try {
    return exchange.answer_.TakeBody({data, size * count}, announced) ? size * count : 0;
  } catch (const std::bad_alloc&) {
    return 0;
  }
}

// The request goes out now. Another request of the same exchange (credentials, redirects) gets no time of its own.
int Exchange::OnConnected(void* self, char*, char*, int, int) {
  auto& exchange = *static_cast<Exchange*>(self);
  const int receive = exchange.applied_.timeouts.receive;
  MessageLoop* const loop = exchange.multiplexer_->Loop();
  if (loop != nullptr && receive > 0 && !exchange.sent_) {
    const auto end = loop->Queue().Now() + std::chrono::milliseconds(receive);
    exchange.deadline_ = std::min(exchange.deadline_.value_or(end), end);
  }
  exchange.sent_ = true;
  return CURL_PREREQFUNC_OK;
}

bool Exchange::Prepare(const Settings& settings) {
  const bool fresh =
      !easy_ || settings.address.origin != applied_.address.origin || settings.credentials != applied_.credentials;
  if (fresh && !MakeHandle(settings.credentials)) return false;
  if (fresh || settings.address.target != applied_.address.target) {
    if (!SetAddress(settings.address)) return false;
    applied_.address = settings.address;
  }
  if (fresh || settings.method != applied_.method) {
    if (!SetMethod(settings.method)) return false;
    applied_.method = settings.method;
  }
  if (fresh || settings.headers != applied_.headers) {
    if (!SetHeaders(settings.headers)) return false;
    applied_.headers = settings.headers;
  }
  if (fresh || settings.timeouts != applied_.timeouts) {
    curl_easy_setopt(easy_.get(), CURLOPT_CONNECTTIMEOUT_MS, ConnectLimit(settings.timeouts.connect));
    applied_.timeouts = settings.timeouts;
  }
  curl_easy_setopt(easy_.get(), CURLOPT_MAXREDIRS, redirects_left_);
  return true;
}

bool Exchange::MakeHandle(const std::optional<Credentials>& credentials) {
  easy_.reset(curl_easy_init());
  CURL* const easy = easy_.get();
  if (easy == nullptr) return false;
  curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
  curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(easy, CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(easy, CURLOPT_PROXY, "");  // keeps the environment's away too
  curl_easy_setopt(easy, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
  curl_easy_setopt(easy, CURLOPT_PATH_AS_IS, 1L);
  curl_easy_setopt(easy, CURLOPT_BUFFERSIZE, kReceiveBufferBytes);
  curl_easy_setopt(easy, CURLOPT_MAXFILESIZE_LARGE, static_cast<curl_off_t>(http_limits::kMaxBodyBytes));
  // An abort must not wait for a resolver thread that waits for a dead name server.
  curl_easy_setopt(easy, CURLOPT_QUICK_EXIT, 1L);
  curl_easy_setopt(easy, CURLOPT_HEADERFUNCTION, &OnHeader);
  curl_easy_setopt(easy, CURLOPT_HEADERDATA, this);
  curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &OnBody);
  curl_easy_setopt(easy, CURLOPT_WRITEDATA, this);
  curl_easy_setopt(easy, CURLOPT_PREREQFUNCTION, &OnConnected);
  curl_easy_setopt(easy, CURLOPT_PREREQDATA, this);
  if (credentials) {
    curl_easy_setopt(easy, CURLOPT_HTTPAUTH, static_cast<long>(CURLAUTH_BASIC | CURLAUTH_DIGEST));
    curl_easy_setopt(easy, CURLOPT_USERNAME, credentials->user_name.c_str());
    curl_easy_setopt(easy, CURLOPT_PASSWORD, credentials->password.c_str());
  }
  applied_.credentials = credentials;
  return true;
}

// libcurl sends a target of its own choosing unless it is given one apart from the address. Then, however, it computes
// Digest over the address, and asks the server of a redirect for the same target again. So only an odd target is given
// apart, with an address that comes as near to it as libcurl allows, and FollowRedirect does the rest.
bool Exchange::SetAddress(const HttpAddress& address) {
  CURL* const easy = easy_.get();
  curl_easy_setopt(easy, CURLOPT_CURLU, nullptr);
  odd_url_.reset();
  if (address.IsPlain()) {
    curl_easy_setopt(easy, CURLOPT_FOLLOWLOCATION, 1L);
    curl_easy_setopt(easy, CURLOPT_REQUEST_TARGET, nullptr);
    return curl_easy_setopt(easy, CURLOPT_URL, (address.origin + address.target).c_str()) == CURLE_OK;
  }
  odd_url_.reset(curl_url());
  CURLU* const url = odd_url_.get();
  if (url == nullptr || curl_url_set(url, CURLUPART_URL, address.origin.c_str(), 0) != CURLUE_OK) return false;
  if (address.target.find('#') == std::string::npos) {
    // Parsed whole, percent escapes keep their letters' case.
    curl_url_set(url, CURLUPART_URL, (address.origin + address.target).c_str(), CURLU_PATH_AS_IS | CURLU_ALLOW_SPACE);
  } else {
    const std::size_t mark = address.target.find('?');
    curl_url_set(url, CURLUPART_PATH, address.target.substr(0, mark).c_str(), 0);
    if (mark != std::string::npos) curl_url_set(url, CURLUPART_QUERY, address.target.substr(mark + 1).c_str(), 0);
  }
  curl_easy_setopt(easy, CURLOPT_FOLLOWLOCATION, 0L);
  return curl_easy_setopt(easy, CURLOPT_CURLU, url) == CURLE_OK &&
         curl_easy_setopt(easy, CURLOPT_REQUEST_TARGET, address.target.c_str()) == CURLE_OK;
}

bool Exchange::SetMethod(const std::string& method) {
  CURL* const easy = easy_.get();
  curl_easy_setopt(easy, CURLOPT_CUSTOMREQUEST, nullptr);
  curl_easy_setopt(easy, CURLOPT_HTTPGET, 1L);  // undoes an earlier HEAD too
  if (method == "GET") return true;
  if (method == "HEAD") return curl_easy_setopt(easy, CURLOPT_NOBODY, 1L) == CURLE_OK;
  return curl_easy_setopt(easy, CURLOPT_CUSTOMREQUEST, method.c_str()) == CURLE_OK;
}

bool Exchange::SetHeaders(const std::vector<std::pair<std::string, std::string>>& headers) {
  HeaderList list(nullptr, &curl_slist_free_all);
  for (const auto& [name, value] : headers) {
    // libcurl takes "name:" for "leave this header out" and "name;" for an empty one.
    const bool empty = value.find_first_not_of(' ') == std::string::npos;
    const std::string line = empty ? name + ";" : name + ": " + value;
    curl_slist* const longer = curl_slist_append(list.get(), line.c_str());
    if (longer == nullptr) return false;
    static_cast<void>(list.release());
    list.reset(longer);
  }
  curl_easy_setopt(easy_.get(), CURLOPT_HTTPHEADER, list.get());
  header_list_ = std::move(list);
  return true;
}

// Where an odd target was redirected; libcurl follows the others by itself. As it does, what proves who asks stays with
// the server that was asked.
Exchange::Redirect Exchange::FollowRedirect() {
  if (applied_.address.IsPlain()) return Redirect::kNone;
  char* location = nullptr;
  curl_easy_getinfo(easy_.get(), CURLINFO_REDIRECT_URL, &location);
  if (location == nullptr) return Redirect::kNone;
  auto address = HttpAddress::Parse(location);
  if (!address || redirects_left_-- == 0) return Redirect::kRefused;
  Settings redirected = wanted_;
  redirected.address = std::move(*address);
  if (redirected.address.origin != wanted_.address.origin) {
    redirected.credentials.reset();
    std::erase_if(redirected.headers, [](const auto& header) {
      return EqualIgnoringCase(header.first, "Authorization") || EqualIgnoringCase(header.first, "Cookie");
    });
  }
  return Prepare(redirected) && multiplexer_->Begin(*this) ? Redirect::kFollowed : Redirect::kRefused;
}

}  // namespace orbelcast
