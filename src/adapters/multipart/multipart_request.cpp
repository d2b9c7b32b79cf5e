#include "adapters/multipart/multipart_request.h"

#include <algorithm>

#include "toolkit/header_block.h"

namespace orbelcast {

MultipartRequest::MultipartRequest(MessageLoop& loop, StreamingHttpFactory& http, std::chrono::milliseconds idle_time)
    : loop_(loop), idle_time_(idle_time), request_(http.CreateStreaming(*this)) {}

bool MultipartRequest::Open(std::string_view method, std::string_view url, bool async) {
  End(false);
  wanted_ = {.method = std::string(method), .url = std::string(url), .credentials = {}};
  async_ = async;
  limit_.reset();
  given_ = {};
  failure_ = HttpFailure::kNone;
  of_stream_ = async && parts_ && !asked_.has_headers && wanted_.method == asked_.method && wanted_.url == asked_.url;
  return of_stream_ || request_->Open(method, url, async);
}

// The stream is not the one that is wanted, or has ended since.
bool MultipartRequest::OpenAnew() {
  of_stream_ = false;
  bool opened = request_->Open(wanted_.method, wanted_.url, async_);
  if (const auto& who = wanted_.credentials) opened &= request_->SetCredentials(who->first, who->second, 0);
  if (limit_) opened &= request_->LimitExchange(*limit_);
  return opened;
}

bool MultipartRequest::SetRequestHeader(std::string_view name, std::string_view value) {
  if (of_stream_ && !OpenAnew()) return false;
  wanted_.has_headers = true;
  return request_->SetRequestHeader(name, value);
}

bool MultipartRequest::SetCredentials(std::string_view user_name, std::string_view password, int flags) {
  auto given = std::make_optional(std::pair(std::string(user_name), std::string(password)));
  const bool same = of_stream_ && flags == 0 && asked_.credentials == given;
  if (!same && ((of_stream_ && !OpenAnew()) || !request_->SetCredentials(user_name, password, flags))) return false;
  wanted_.credentials = std::move(given);
  return true;
}

bool MultipartRequest::SetTimeouts(int resolve, int connect, int send, int receive) {
  if (!request_->SetTimeouts(resolve, connect, send, receive)) return false;
  receive_limit_.reset();
  if (receive != 0) receive_limit_ = std::chrono::milliseconds(receive);
  return true;
}

bool MultipartRequest::LimitExchange(std::chrono::milliseconds limit) {
  if (limit.count() <= 0 || (!of_stream_ && !request_->LimitExchange(limit))) return false;
  limit_ = limit;
  return true;
}

bool MultipartRequest::Send() {
  if (outcome_) return false;
  given_ = {};
  failure_ = HttpFailure::kNone;
  if (of_stream_ && parts_ && wanted_ == asked_) {
    AskForPart();
    return true;
  }
  if (of_stream_ && !OpenAnew()) return false;
  asked_ = wanted_;
  unread_ = 0;
  const auto mine = outcome_ = std::make_shared<Outcome>();
  const bool sent = request_->Send();
  if (!sent) End(false);
  return async_ ? sent : mine->answered;
}

void MultipartRequest::AskForPart() {
  outcome_ = std::make_shared<Outcome>();
  unread_ = request_->Unread();
  request_->LiftLimits();
  for (const auto& limit : {limit_, receive_limit_}) {
    if (limit) request_->LimitRest(*limit);
  }
  AnswerWhereNew();
}

bool MultipartRequest::WaitForResponse(std::optional<std::chrono::milliseconds> limit) {
  const std::shared_ptr<Outcome> mine = outcome_;
  if (!mine) return Status() != 0;
  if (limit) request_->LimitRest(*limit);
  loop_.Wait(mine->ended);
  return mine->answered;
}

// ---- The stream ----------------------------------------------------------------------------------------------------

bool MultipartRequest::ReadsBody(int status, std::string_view headers) {
  const std::string_view type = HeaderIn(headers, "Content-Type");
  if (status != kHttpOk || !PartReader::Reads(type)) return false;
  parts_.emplace(type);
  stream_headers_ = headers;
  of_stream_ = true;
  return true;
}

HttpBodyReader::Reading MultipartRequest::TakeBody(std::string_view piece) {
  if (!parts_->Take(piece)) return Reading::kRefused;
  if (unread_ > 0) {
    unread_ -= std::min(unread_, piece.size());
    // More than a body may have come: chunks have frames.
    if (unread_ > 0 && request_->Unread() == 0) AnswerInNextRound();
  }
  AnswerWhereNew();
  return async_ || outcome_ ? Reading::kGoesOn : Reading::kEnough;
}

// By then all that had come has been taken. The outcome is done before this object goes.
void MultipartRequest::AnswerInNextRound() {
  loop_.Queue().Post([this, mine = outcome_] {
    if (mine->ended.IsDone()) return;
    unread_ = 0;
    AnswerWhereNew();
  });
}

void MultipartRequest::AnswerWhereNew() {
  if (!outcome_ || unread_ > 0 || !parts_->HasNewest()) return;
  Answer();
  request_->LiftLimits();
  request_->LimitRest(idle_time_);
}

void MultipartRequest::Answer() {
  given_ = parts_->TakeNewest();
  // Behind the status line, since the first header of a name is the one that counts.
  given_.headers.insert(0, stream_headers_, 0, stream_headers_.find('\n') + 1);
  given_.headers.append(stream_headers_, stream_headers_.find('\n') + 1);
  End(true);
}

void MultipartRequest::Ended() {
  if (!of_stream_) {
    End(request_->Status() != 0);
  } else if (outcome_ && parts_->HasNewest()) {
    Answer();
  } else if (outcome_) {
    failure_ = request_->Failure() == HttpFailure::kNone ? HttpFailure::kCutShort : request_->Failure();
    End(false);
  }
  parts_.reset();
}

void MultipartRequest::End(bool answered) {
  const auto outcome = std::exchange(outcome_, nullptr);
  if (!outcome) return;
  outcome->answered = answered;
  outcome->ended.Complete();
}

// ---- The answer ----------------------------------------------------------------------------------------------------

int MultipartRequest::Status() {
  if (!of_stream_) return request_->Status();
  return given_.body.Empty() ? 0 : kHttpOk;
}

std::string_view MultipartRequest::GetResponseHeader(std::string_view name) {
  return of_stream_ ? HeaderIn(given_.headers, name) : request_->GetResponseHeader(name);
}

std::string MultipartRequest::GetAllResponseHeaders() {
  return of_stream_ ? given_.headers : request_->GetAllResponseHeaders();
}

std::string MultipartRequest::ResponseText() {
  if (!of_stream_) return request_->ResponseText();
  return {given_.body.Bytes().begin(), given_.body.Bytes().end()};
}

}  // namespace orbelcast
