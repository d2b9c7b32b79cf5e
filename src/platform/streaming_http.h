#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <string_view>

#include "platform/http_request.h"

/// Answers that are read while they come, because they have no end. For adapters: a control's requests end.
namespace orbelcast {

/// Reads an answer's body in place of the request object. Called in the middle of an exchange: nothing here may begin
/// or end one, but for `Ended`.
class HttpBodyReader {
 public:
  enum class Reading {
    kGoesOn,
    kEnough,   ///< The exchange ends here, with an answer.
    kRefused,  ///< It fails, as kCutShort.
  };

  virtual ~HttpBodyReader() = default;
  /// An answer's body begins. `headers`: status line and headers, each line ended by CR LF. True: the whole body goes
  /// to `TakeBody`, and the answer will have an empty one; false: the request object keeps it, as ever.
  virtual bool ReadsBody(int status, std::string_view headers) = 0;
  virtual Reading TakeBody(std::string_view piece) = 0;
  /// The exchange has ended, whatever its answer was and who read it; the request tells how.
  virtual void Ended() = 0;
};

/// A request whose exchange may go on for as long as its body does.
class StreamingHttpRequest : public HttpRequest {
 public:
  /// Lifts every limit of the exchange that is under way.
  virtual void LiftLimits() = 0;
  /// Adds a limit to those of the exchange that is under way: it fails, as kTimedOut, where it still is after that
  /// time.
  virtual void LimitRest(std::chrono::milliseconds limit) = 0;
  /// Bytes that have come from the server and were not read yet, as far as that can be told.
  virtual std::size_t Unread() = 0;
};

class StreamingHttpFactory {
 public:
  virtual ~StreamingHttpFactory() = default;
  /// A new request. `reader` outlives it or its last exchange: whoever drops the request in mid exchange aborts it
  /// first.
  virtual std::shared_ptr<StreamingHttpRequest> CreateStreaming(HttpBodyReader& reader) = 0;
};

}  // namespace orbelcast
