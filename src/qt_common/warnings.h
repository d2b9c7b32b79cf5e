#pragma once

#include "toolkit/signal.h"
#include "viewer/video_server_push.h"

namespace orbelcast {

/// Warns, in the logging category "orbelcast.viewer", of each address that `control` is given and does nothing with,
/// for as long as the connection lives. Credentials and paths, which may hold some, are left out.
[[nodiscard]] Connection WarnOfIgnoredAddresses(VideoServerPush& control);

}  // namespace orbelcast
