#include "stream/noted_http.h"

#include <cstdio>
#include <iostream>
#include <string>
#include <utility>

#include "common/shown_text.h"
#include "stream/failure_text.h"

namespace orbelcast {

class NotedHttp::Request final : public ForwardingHttpRequest {
 public:
  Request(std::shared_ptr<HttpRequest> request, Choice choice, std::shared_ptr<Notes> notes)
      : ForwardingHttpRequest(std::move(request)), choice_(choice), notes_(std::move(notes)) {
    if (choice_.limit.count() > 0) SetTimeouts(0, 0, 0, 0);
  }

  bool Open(std::string_view method, std::string_view url, bool async) override {
    url_ = url;
    async_ = async;
    return ForwardingHttpRequest::Open(method, url, async);
  }

  bool SetTimeouts(int resolve, int connect, int send, int receive) override {
    const auto limited = [this](int limit) { return limit != 0 ? limit : static_cast<int>(choice_.limit.count()); };
    return ForwardingHttpRequest::SetTimeouts(limited(resolve), limited(connect), limited(send), limited(receive));
  }

  bool Send() override {
    begun_ = Clock::now();
    under_way_ = true;
    if (choice_.tells) std::cerr << "> GET " << MaskedAddress(url_).Text() << '\n';
    const bool worked = ForwardingHttpRequest::Send();
    if (!async_ || !worked) Note(worked);
    return worked;
  }

  bool WaitForResponse(std::optional<std::chrono::milliseconds> limit) override {
    const bool worked = ForwardingHttpRequest::WaitForResponse(limit);
    Note(worked);
    return worked;
  }

 private:
  using Clock = std::chrono::steady_clock;

  void Note(bool worked) {
    if (!std::exchange(under_way_, false)) return;
    const orbelcast::Failure failure = FailureOf(*Forwarded(), worked);
    notes_->newest = failure;
    notes_->time_code = Forwarded()->GetResponseHeader("RC_TCR");
    if (notes_->of_address.size() < kAddressesNoted) notes_->of_address[url_] = failure;
    if (choice_.tells) std::cerr << "< " << Shown(Outcome()) << '\n';
  }

  std::string Outcome() const {
    HttpRequest& request = *Forwarded();
    char time[32];
    std::snprintf(time, sizeof time, "%.1f ms",
                  std::chrono::duration<double, std::milli>(Clock::now() - begun_).count());
    if (request.Status() == 0) return WordOf(notes_->newest) + " after " + time;
    return std::to_string(request.Status()) + " " + std::string(request.GetResponseHeader("Content-Type")) + ", " +
           std::to_string(request.ResponseBody().Size()) + " bytes after " + time;
  }

  const Choice choice_;
  const std::shared_ptr<Notes> notes_;
  std::string url_;
  Clock::time_point begun_;
  bool async_ = false;
  bool under_way_ = false;
};

std::optional<Failure> NotedHttp::NewestOf(std::string_view beginning) const {
  const auto found = notes_->of_address.lower_bound(beginning);
  const bool is_its = found != notes_->of_address.end() && found->first.starts_with(beginning);
  return is_its ? std::optional(found->second) : std::nullopt;
}

std::shared_ptr<HttpRequest> NotedHttp::Create() {
  return std::make_shared<Request>(http_.Create(), choice_, notes_);
}

}  // namespace orbelcast
