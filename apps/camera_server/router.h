#pragma once

#include <chrono>
#include <string>
#include <string_view>

#include "authentication.h"
#include "commands.h"
#include "http_server.h"
#include "request_log.h"
#include "viewers.h"

namespace orbelcast::camera_server {

/// Which request gets which answer.
class Router final : public RequestHandler {
 public:
  /// What `rooms` names, and `requests`, outlive the router.
  Router(const Rooms& rooms, RequestLog& requests)
      : rooms_(rooms), requests_(requests), authenticator_(rooms.settings) {}

  void Heard(std::string_view head, const Client& client) override { requests_.Record(head, client); }
  Reply Answer(const Request& request, const Client& client) override;
  void Gone(const Client& client) override { viewers_.Remove(client.id); }

 private:
  Reply AnswerLive(const Request& request, const Client& client);
  Reply AnswerLoginBase(const Request& request, const Client& client);
  Reply AnswerInfo(const Request& request, const Client& client);
  Reply AnswerRelayLookup(const Request& request, const Client& client);
  Response RelayLookup(const Request& request, const Client& client);
  Response HomeOrNothing(std::string_view path) const;
  /// The refusal as an answer; notes who tried when there were credentials.
  Reply Refuse(Refusal refusal, const Actor& actor, std::string_view what);

  Rooms rooms_;
  RequestLog& requests_;
  Authenticator authenticator_;
  Viewers viewers_;
  const std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

}  // namespace orbelcast::camera_server
