#pragma once

#include "http_server.h"
#include "pictures.h"
#include "settings.h"
#include "viewers.h"

namespace orbelcast::camera_server {

/// Which request gets which answer. Further commands of the protocol are further lines of Answer.
class Router final : public RequestHandler {
 public:
  /// Both outlive the router.
  Router(const Settings& settings, PictureSource& pictures) : settings_(settings), pictures_(pictures) {}

  Reply Answer(const Request& request, const Client& client) override;
  void Gone(const Client& client) override { viewers_.Remove(client.id); }

 private:
  Reply AnswerHome() const;
  Reply AnswerLive(const Request& request, const Client& client);

  const Settings& settings_;
  PictureSource& pictures_;
  Viewers viewers_;
};

}  // namespace orbelcast::camera_server
