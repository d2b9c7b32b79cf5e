#include "adapters/multipart/multipart_http.h"

#include "adapters/multipart/multipart_request.h"

namespace orbelcast {

std::shared_ptr<HttpRequest> MultipartHttp::Create() {
  return std::make_shared<MultipartRequest>(loop_, http_, idle_time_);
}

}  // namespace orbelcast
