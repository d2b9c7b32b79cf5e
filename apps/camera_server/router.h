#pragma once

#include "authentication.h"
#include "faults.h"
#include "http_server.h"
#include "live_address.h"
#include "pictures.h"
#include "settings.h"
#include "viewers.h"

namespace orbelcast::camera_server {

/// Which request gets which answer. Further commands of the protocol are further lines of Answer.
class Router final : public RequestHandler {
 public:
  /// All outlive the router.
  Router(const Settings& settings, PictureSource& pictures, FaultPlan& faults)
      : settings_(settings), pictures_(pictures), faults_(faults), authenticator_(settings) {}

  Reply Answer(const Request& request, const Client& client) override;
  void Gone(const Client& client) override { viewers_.Remove(client.id); }

 private:
  Reply AnswerHome() const;
  Reply AnswerLive(const Request& request, const Client& client);
  /// Reads a fault for a camera, or for all, and plans it; tells how all cameras stand. For this machine alone.
  Reply AnswerControl(const Request& request, const Client& client);
  Response LivePicture(const LiveAddress& address, const Client& client);

  const Settings& settings_;
  PictureSource& pictures_;
  FaultPlan& faults_;
  Authenticator authenticator_;
  Viewers viewers_;
};

}  // namespace orbelcast::camera_server
