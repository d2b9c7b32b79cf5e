#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "adapters/multipart/part_reader.h"
#include "platform/message_loop.h"
#include "platform/streaming_http.h"

namespace orbelcast {

/// A request over another one, whose exchange it leaves under way while that reads a stream; see MultipartHttp.
class MultipartRequest final : public HttpRequest, private HttpBodyReader {
 public:
  MultipartRequest(MessageLoop& loop, StreamingHttpFactory& http, std::chrono::milliseconds idle_time);
  ~MultipartRequest() override { Abort(); }
  MultipartRequest(const MultipartRequest&) = delete;
  MultipartRequest& operator=(const MultipartRequest&) = delete;

  bool Open(std::string_view method, std::string_view url, bool async) override;
  bool SetRequestHeader(std::string_view name, std::string_view value) override;
  bool SetCredentials(std::string_view user_name, std::string_view password, int flags) override;
  bool SetTimeouts(int resolve, int connect, int send, int receive) override;
  bool LimitExchange(std::chrono::milliseconds limit) override;
  bool Send() override;
  bool WaitForResponse(std::optional<std::chrono::milliseconds> limit) override;
  int Status() override;
  HttpFailure Failure() override { return of_stream_ ? failure_ : request_->Failure(); }
  std::string_view GetResponseHeader(std::string_view name) override;
  std::string GetAllResponseHeaders() override;
  std::string ResponseText() override;
  FrameBytes ResponseBody() override { return of_stream_ ? given_.body : request_->ResponseBody(); }
  void Abort() override { request_->Abort(); }

 private:
  /// The exchange that somebody may wait for.
  struct Outcome {
    Completion ended;
    bool answered = false;
  };

  /// Of a request, all that makes it another one.
  struct Asked {
    std::string method;
    std::string url;
    std::optional<std::pair<std::string, std::string>> credentials;
    bool has_headers = false;
    bool operator==(const Asked&) const = default;
  };

  bool ReadsBody(int status, std::string_view headers) override;
  Reading TakeBody(std::string_view piece) override;
  void Ended() override;

  bool OpenAnew();
  void AskForPart();
  void AnswerInNextRound();
  void AnswerWhereNew();
  void Answer();
  void End(bool answered);

  MessageLoop& loop_;  // there while anything is under way
  const std::chrono::milliseconds idle_time_;
  const std::shared_ptr<StreamingHttpRequest> request_;

  Asked wanted_;  // by the exchange
  bool async_ = false;
  std::optional<std::chrono::milliseconds> limit_;
  std::optional<std::chrono::milliseconds> receive_limit_;
  std::shared_ptr<Outcome> outcome_;  // while the exchange is under way
  bool of_stream_ = false;            // the exchange, and its answer, are the stream's; otherwise the request's
  HttpFailure failure_ = HttpFailure::kNone;
  PartReader::Part given_;  // empty without an answer

  Asked asked_;                      // by the request that is under way
  std::optional<PartReader> parts_;  // while there is a stream
  std::string stream_headers_;
  std::size_t unread_ = 0;  // bytes that had come when the exchange was sent, and are older than its answer may be
};

}  // namespace orbelcast
