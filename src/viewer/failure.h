#pragma once

namespace orbelcast {

class HttpRequest;

/// Why a viewer has no new picture.
enum class FailureKind {
  kNone,         ///< It has one, or has asked for none yet.
  kUnreachable,  ///< The address cannot be asked, its host is unknown, or does not take the connection.
  kTimedOut,     ///< The server did not answer, or not completely, within the request's limits.
  kCutShort,     ///< The connection ended before the answer was complete, or what came is no answer.
  kNoAnswer,   ///< No answer for another reason: the request was aborted, redirected in circles, or could not be made.
  kStatus,     ///< An answer with another status than 200.
  kNoPicture,  ///< An answer with status 200 that is no picture.
  kDamagedPicture,  ///< One that is a picture, but ends early or cannot be decoded.
};

/// The newest failure of a viewer as a value: the status texts and events describe it in words.
struct Failure {
  FailureKind kind = FailureKind::kNone;
  int status = 0;  ///< The answer's HTTP status where that is the failure (kStatus); else 0.

  bool operator==(const Failure&) const = default;
};

/// The reason why `request` has no answer of status 200. `worked`: whether each of its steps succeeded.
Failure FailureOf(HttpRequest& request, bool worked);

}  // namespace orbelcast
