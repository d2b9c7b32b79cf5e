#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/http_request.h"
#include "viewer/failure.h"

namespace orbelcast {

/// Passes requests on, and notes how they end: for those whose sender keeps that to itself.
class NotedHttp final : public HttpRequestFactory {
 public:
  struct Choice {
    bool tells = false;  ///< Each request, and how it ended, is told on standard error.
    /// For requests whose sender sets themselves no limit; 0 leaves them without.
    std::chrono::milliseconds limit{};
  };

  /// `http` outlives this factory.
  NotedHttp(HttpRequestFactory& http, Choice choice) : http_(http), choice_(choice) {}

  std::shared_ptr<HttpRequest> Create() override;

  /// How the newest request ended.
  Failure Newest() const { return notes_->newest; }
  /// The time code that its answer has as a header, whatever that holds; empty without one.
  const std::string& NewestTimeCode() const { return notes_->time_code; }
  /// How the newest one ended whose address begins so; nothing where none has.
  std::optional<Failure> NewestOf(std::string_view beginning) const;

 private:
  class Request;
  /// Addresses of which something is noted: more than any command asks.
  static constexpr std::size_t kAddressesNoted = 1024;
  struct Notes {
    Failure newest;
    std::string time_code;
    std::map<std::string, Failure, std::less<>> of_address;
  };

  HttpRequestFactory& http_;
  const Choice choice_;
  const std::shared_ptr<Notes> notes_ = std::make_shared<Notes>();  // a request may outlive its factory
};

}  // namespace orbelcast
