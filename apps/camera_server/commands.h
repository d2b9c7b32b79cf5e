#pragma once

#include <string_view>

#include "activity_log.h"
#include "archive.h"
#include "faults.h"
#include "http_message.h"
#include "pictures.h"
#include "settings.h"
#include "site.h"

namespace orbelcast::camera_server {

/// What the server works with and shows.
struct Rooms {
  const Settings& settings;
  PictureSource& pictures;
  FaultPlan& faults;
  Site& site;
  Archive& archive;
  ActivityLog& activity;
};

/// Carries out what stands behind a login base, such as "output=3+1", for somebody who was let in.
///
///   img?Device=…                      a picture of the archive
///   activitylogfile                   the activity log
///   message?msg=TEXT&Send=Send+Message
///   output=N+1, output=N+0            switches an output
///   activatealert=N
///
/// Everything is taken as raw bytes: nothing is decoded.
Reply AnswerCommand(Rooms& rooms, const Actor& actor, std::string_view command);

}  // namespace orbelcast::camera_server
