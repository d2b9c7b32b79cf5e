#pragma once

#include "authentication.h"
#include "faults.h"
#include "http_server.h"
#include "live_address.h"
#include "pictures.h"
#include "request_log.h"
#include "settings.h"
#include "viewers.h"

namespace orbelcast::camera_server {

/// Which request gets which answer. Further commands of the protocol are further lines of Answer.
class Router final : public RequestHandler {
 public:
  /// All outlive the router.
  Router(const Settings& settings, PictureSource& pictures, FaultPlan& faults, RequestLog& requests)
      : settings_(settings), pictures_(pictures), faults_(faults), requests_(requests), authenticator_(settings) {}

  void Heard(std::string_view head, const Client& client) override { requests_.Record(head, client); }

  Reply Answer(const Request& request, const Client& client) override;
  void Gone(const Client& client) override { viewers_.Remove(client.id); }

 private:
  Reply AnswerHome() const;
  Reply AnswerLive(const Request& request, const Client& client);
  /// What a test steers and watches the server with; for this machine alone.
  Reply AnswerControl(const Request& request, const Client& client);
  /// Reads a fault for a camera, or for all, and plans it; tells how all cameras stand.
  Reply AnswerFaults(const Request& request);
  /// Tells what was asked, and forgets it if told to.
  Reply AnswerRequests(const Request& request);
  Response LivePicture(const LiveAddress& address, const Client& client);

  const Settings& settings_;
  PictureSource& pictures_;
  FaultPlan& faults_;
  RequestLog& requests_;
  Authenticator authenticator_;
  Viewers viewers_;
};

}  // namespace orbelcast::camera_server
