#pragma once

#include <string_view>

#include "camera_server/http_server.h"
#include "camera_server/services.h"

namespace orbelcast::camera_server {

/// Carries out what stands behind a login base, such as "output=3+1", for somebody who was let in.
///
///   img?Device=…                      a picture of the archive
///   activitylogfile                   the activity log
///   message?msg=TEXT&Send=Send+Message
///   output=N+1, output=N+0            switches an output
///   activatealert=N
Response AnswerCommand(Services& services, const Actor& actor, std::string_view command);

/// What a test steers and watches the server with, for clients on this machine alone:
///   /control/fault     how all places stand; ?camera=PLACE&fault=FAULT plans one
///   /control/input     how the inputs stand; ?input=N&state=1 or 0 switches one
///   /control/requests  what was asked; ?clear=yes forgets what it shows
Response AnswerControl(Services& services, const Request& request, const Client& client);

}  // namespace orbelcast::camera_server
