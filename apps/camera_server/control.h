#pragma once

#include "commands.h"
#include "http_server.h"
#include "request_log.h"

namespace orbelcast::camera_server {

/// What a test steers and watches the server with, for clients on this machine alone:
///   /control/fault     how all places stand; ?camera=PLACE&fault=FAULT plans one
///   /control/input     how the inputs stand; ?input=N&state=1 or 0 switches one
///   /control/requests  what was asked; ?clear=yes forgets what it shows
Reply AnswerControl(Rooms& rooms, RequestLog& requests, const Request& request, const Client& client);

}  // namespace orbelcast::camera_server
