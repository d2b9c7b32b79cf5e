#include "adapters/curl/exchange.h"

#include <sys/ioctl.h>

#include <algorithm>
#include <climits>
#include <utility>

#include "toolkit/ascii.h"

namespace orbelcast {

namespace {

constexpr int kUnauthorized = 401;
/// A login is answered once in an exchange, and once more where the server says that only its nonce was stale.
constexpr int kMaxLogins = 2;

int SumOfLimits(int a, int b) {
  if (a == 0 || b == 0) return 0;
  return a > INT_MAX - b ? INT_MAX : a + b;
}

HttpFailure FailureOf(CURLcode result) {
  switch (result) {
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_CONNECT:
    case CURLE_SSL_CONNECT_ERROR:
    case CURLE_PEER_FAILED_VERIFICATION:
      return HttpFailure::kUnreachable;
    case CURLE_OPERATION_TIMEDOUT:
      return HttpFailure::kTimedOut;
    case CURLE_GOT_NOTHING:
    case CURLE_PARTIAL_FILE:
    case CURLE_SEND_ERROR:
    case CURLE_RECV_ERROR:
    case CURLE_WEIRD_SERVER_REPLY:
    case CURLE_UNSUPPORTED_PROTOCOL:  // an answer in another language than HTTP
    case CURLE_WRITE_ERROR:           // an answer that is refused while it comes
    case CURLE_FILESIZE_EXCEEDED:
      return HttpFailure::kCutShort;
    default:
      return HttpFailure::kOther;
  }
}

bool SaysWhoAsks(std::string_view header) {
  return EqualIgnoringCase(header, "Authorization") || EqualIgnoringCase(header, "Cookie");
}

}  // namespace

Exchange::Exchange(std::shared_ptr<Multiplexer> multiplexer, HttpBodyReader* reader)
    : multiplexer_(std::move(multiplexer)), reader_(reader) {
  multiplexer_->CountRequests(1);
}

Exchange::~Exchange() {
  EnterState(State::kClosed);
  multiplexer_->CountRequests(-1);
}

void Exchange::EnterState(State state) {
  state_ = state;
  if (state == State::kUnderWay) {
    outcome_ = std::make_shared<Outcome>();
    return;
  }
  multiplexer_->Drop(*this);
  transfer_.reset();
  if (const auto outcome = std::exchange(outcome_, nullptr)) {
    outcome->answered = state == State::kAnswered;
    outcome->ended.Complete();
    if (reader_ != nullptr) reader_->Ended();
  }
}

void Exchange::Fail(HttpFailure failure) {
  failure_ = failure;
  EnterState(State::kFailed);
}

// ---- Steps ---------------------------------------------------------------------------------------------------------

bool Exchange::Open(std::string_view method, std::string_view url, bool async) {
  EnterState(State::kClosed);
  answer_.Clear();
  wanted_.headers.clear();
  wanted_.credentials.reset();
  wanted_.limit.reset();
  failure_ = HttpFailure::kUnreachable;
  if (!IsHttpToken(method)) return false;
  if (url != url_ || url_.empty()) {
    auto address = HttpAddress::Parse(url);
    if (!address || !MayAsk(*address)) return false;
    wanted_.address = std::move(*address);
    url_ = url;
  }
  wanted_.method = method;
  wanted_.async = async;
  failure_ = HttpFailure::kNone;
  EnterState(State::kOpened);
  return true;
}

bool Exchange::MayAsk(const HttpAddress& address) const {
  if (!multiplexer_->may_ask) return true;
  const auto [host, port] = address.Server();
  return multiplexer_->may_ask(host, port);
}

bool Exchange::SetRequestHeader(std::string_view name, std::string_view value) {
  if (state_ == State::kClosed || !IsHttpToken(name) || HasControlCharacter(value)) return false;
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
  if (state_ == State::kClosed || flags != 0 || HasControlCharacter(user_name) || HasControlCharacter(password)) {
    return false;
  }
  wanted_.credentials = {std::string(user_name), std::string(password)};
  return true;
}

bool Exchange::SetTimeouts(int resolve, int connect, int send, int receive) {
  if (resolve < 0 || connect < 0 || send < 0 || receive < 0) return false;
  // A request without a body is sent in one piece as soon as there is a connection: `send` has nothing to bound.
  timeouts_ = {resolve, connect, receive};
  return true;
}

bool Exchange::LimitExchange(std::chrono::milliseconds limit) {
  if (state_ == State::kClosed || limit.count() <= 0) return false;
  wanted_.limit = limit;
  return true;
}

bool Exchange::Send() {
  if (state_ == State::kClosed || state_ == State::kUnderWay) return false;
  failure_ = HttpFailure::kNone;
  EnterState(State::kUnderWay);
  limits_ = {};
  if (wanted_.limit) limits_.whole = At(*wanted_.limit);
  allowance_ = {http_limits::kMaxRedirects, kMaxLogins};
  RememberLogin();
  if (!BeginTransfer(wanted_.address)) {
    Fail(HttpFailure::kOther);
    return false;
  }
  if (wanted_.async) return true;
  multiplexer_->Block(*this);
  return state_ == State::kAnswered;
}

bool Exchange::WaitForResponse(std::optional<std::chrono::milliseconds> limit) {
  const std::shared_ptr<Outcome> mine = outcome_;
  MessageLoop* const loop = multiplexer_->Loop();
  if (!mine || loop == nullptr) return state_ == State::kAnswered;
  EventQueue& queue = loop->Queue();
  EventQueue::TimerId timer = 0;
  if (limit) {
    timer = queue.ArmTimer(*limit, [this, &timer, &mine] {
      timer = 0;
      if (outcome_ == mine) Fail(HttpFailure::kTimedOut);
    });
  }
  loop->Wait(mine->ended);
  if (timer != 0) queue.CancelTimer(timer);
  return mine->answered;
}

void Exchange::Abort() {
  if (state_ == State::kUnderWay) Fail(HttpFailure::kAborted);
}

// ---- The chain of transfers ----------------------------------------------------------------------------------------

// A login that the server has asked for is answered from then on with each request to it, until other credentials come.
// A header of the caller's own takes precedence.
void Exchange::RememberLogin() {
  const bool written = std::ranges::any_of(
      wanted_.headers, [](const auto& header) { return EqualIgnoringCase(header.first, "Authorization"); });
  if (!wanted_.credentials || written) {
    login_.reset();
    return;
  }
  if (login_ && login_->Of() == *wanted_.credentials && login_address_.SameServer(wanted_.address)) return;
  login_.emplace(*wanted_.credentials);
  login_address_ = wanted_.address;
}

// Credentials stay with the server that was asked.
HeaderLines Exchange::HeadersFor(const HttpAddress& address) {
  HeaderLines headers = wanted_.headers;
  if (!address.SameServer(wanted_.address)) {
    std::erase_if(headers, [](const auto& header) { return SaysWhoAsks(header.first); });
  } else if (login_) {
    std::string authorization = login_->Authorization(wanted_.method, address.target);
    if (!authorization.empty()) headers.emplace_back("Authorization", std::move(authorization));
  }
  return headers;
}

bool Exchange::BeginTransfer(const HttpAddress& address) {
  answer_.Clear();
  reader_reads_.reset();
  reader_has_enough_ = false;
  asked_ = address;
  limits_.connection = In(timeouts_.resolve);
  TransferWatcher& watcher = *this;
  transfer_ = std::make_unique<EasyTransfer>(wanted_.method, asked_, HeadersFor(asked_),
                                             SumOfLimits(timeouts_.resolve, timeouts_.connect), watcher);
  return transfer_->Handle() != nullptr && multiplexer_->Begin(*this);
}

bool Exchange::TakeBody(std::string_view part, std::int64_t announced) {
  if (reader_ != nullptr && !reader_reads_) reader_reads_ = reader_->ReadsBody(answer_.Status(), answer_.Headers());
  if (!reader_reads_.value_or(false)) return answer_.TakeBody(part, announced);
  const HttpBodyReader::Reading reading = reader_->TakeBody(part);
  reader_has_enough_ = reading == HttpBodyReader::Reading::kEnough;
  return reading == HttpBodyReader::Reading::kGoesOn;
}

void Exchange::Ended(CURLcode result) {
  if (reader_has_enough_) return EnterState(State::kAnswered);
  if (result != CURLE_OK) return Fail(FailureOf(result));
  if (answer_.Status() <= 0) return Fail(HttpFailure::kCutShort);
  std::optional<HttpAddress> next;
  if (AnswersLogin()) {
    next = asked_;
  } else if (const std::string_view location = answer_.Header("Location"); answer_.IsRedirect() && !location.empty()) {
    next = asked_.Resolve(std::string(location));
    if (!next || !MayAsk(*next) || allowance_.redirects-- == 0) return Fail(HttpFailure::kOther);
    // Kept as it was opened, with the user name in it.
    if (next->SameServer(wanted_.address)) {
      next->origin = wanted_.address.origin;
      next->parsed_origin = wanted_.address.parsed_origin;
    }
  } else {
    return EnterState(State::kAnswered);
  }
  if (!BeginTransfer(*next)) Fail(HttpFailure::kOther);
}

// True where the request is to be sent again, with the login that the server asks for.
bool Exchange::AnswersLogin() {
  if (answer_.Status() != kUnauthorized || !login_ || !asked_.SameServer(wanted_.address)) return false;
  if (!login_->Take(answer_.AllHeaders("WWW-Authenticate"))) return false;
  const bool first = allowance_.logins == kMaxLogins;
  return allowance_.logins-- > 0 && (first || login_->IsStale());
}

// ---- Limits --------------------------------------------------------------------------------------------------------

Exchange::Limits::Time Exchange::Limits::Next() const {
  Time next;
  for (const Time& each : {whole, connection, receive}) {
    if (each) next = std::min(next.value_or(*each), *each);
  }
  return next;
}

Exchange::Limits::Time Exchange::At(std::chrono::milliseconds from_now) const {
  MessageLoop* const loop = multiplexer_->Loop();
  if (loop == nullptr) return std::nullopt;
  const auto time = loop->Queue().Now() + from_now;
  multiplexer_->NoteDeadline(time);
  return time;
}

Exchange::Limits::Time Exchange::In(int milliseconds) const {
  return milliseconds == 0 ? std::nullopt : At(std::chrono::milliseconds(milliseconds));
}

void Exchange::LimitRest(std::chrono::milliseconds limit) {
  MessageLoop* const loop = multiplexer_->Loop();
  if (loop == nullptr || state_ != State::kUnderWay) return;
  const EventQueue::Nanoseconds end = loop->Queue().Now() + limit;
  limits_.whole = std::min(limits_.whole.value_or(end), end);
  multiplexer_->MoveDeadline(end);
}

std::size_t Exchange::Unread() {
  const auto socket = multiplexer_->SocketOf(*this);
  int bytes = 0;
  if (!socket || ioctl(*socket, FIONREAD, &bytes) != 0) return 0;
  return static_cast<std::size_t>(bytes);
}

void Exchange::Connecting() {
  limits_.connection = In(timeouts_.connect);
}

// Further requests of the same exchange (credentials, redirects) get no time of their own.
void Exchange::Sending() {
  limits_.connection.reset();
  if (!limits_.receive) limits_.receive = In(timeouts_.receive);
}

}  // namespace orbelcast
