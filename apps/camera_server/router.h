#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <string_view>

#include "camera_server/authentication.h"
#include "camera_server/http.h"
#include "camera_server/services.h"

namespace orbelcast::camera_server {

/// Gives each request its answer. Called from many threads at once.
class Router {
 public:
  /// `services` outlive the router.
  explicit Router(Services& services) : services_(services), authenticator_(services.settings) {}

  /// Notes that a client sent `head`, all from the method to the empty line, which may be no request at all.
  void Heard(std::string_view head, const Client& client) { services_.requests.Record(head, client); }
  /// Answers a GET or HEAD.
  Response Answer(const Request& request, const Client& client);
  /// The client's connection has ended.
  void Gone(const Client& client);

 private:
  Response AnswerLive(const Request& request, const Client& client);
  Response AnswerLoginBase(const Request& request, const Client& client);
  Response AnswerInfo(const Request& request, const Client& client);
  Response AnswerRelayLookup(const Request& request, const Client& client);
  Response AnswerPage(const Request& request, const Client& client);
  /// The refusal as an answer; notes who tried when there were credentials.
  Response Refuse(Refusal refusal, const Actor& actor, std::string_view what);
  /// Notes that the client watches the camera now, and counts the connections that have lately done so.
  int CountViewers(std::uint64_t client, int camera);

  using Clock = std::chrono::steady_clock;
  struct Watch {
    int camera;
    Clock::time_point last;
  };

  Services& services_;
  Authenticator authenticator_;
  const Clock::time_point start_ = Clock::now();
  std::mutex watches_mutex_;
  std::map<std::uint64_t, Watch> watches_;  // by client; no more than there are connections
};

}  // namespace orbelcast::camera_server
