#include "viewer/failure.h"

#include "platform/http_request.h"

namespace orbelcast {

Failure FailureOf(HttpRequest& request, bool worked) {
  switch (request.Failure()) {
    case HttpFailure::kUnreachable:
      return {FailureKind::kUnreachable};
    case HttpFailure::kTimedOut:
      return {FailureKind::kTimedOut};
    case HttpFailure::kCutShort:
      return {FailureKind::kCutShort};
    case HttpFailure::kAborted:
    case HttpFailure::kOther:
      return {FailureKind::kNoAnswer};
    case HttpFailure::kNone:
      break;
  }
  const int status = request.Status();
  if (!worked || status == 0) return {FailureKind::kNoAnswer};
  if (status != kHttpOk) return {FailureKind::kStatus, status};
  return {};
}

}  // namespace orbelcast
