#pragma once

#include <memory>

#include "camera_server/activity_log.h"
#include "camera_server/archive.h"
#include "camera_server/faults.h"
#include "camera_server/pictures.h"
#include "camera_server/request_log.h"
#include "camera_server/settings.h"
#include "camera_server/site.h"

namespace orbelcast::camera_server {

/// What the server works with and shows; each is thread-safe.
struct Services {
  /// `chosen` outlives this. Throws std::exception with what is wrong with a folder, a file or a fault.
  explicit Services(const Settings& chosen)
      : settings(chosen),
        faults(static_cast<int>(chosen.camera_names.size())),
        site(chosen),
        archive(chosen),
        pictures(MakePictureSource(chosen)),
        requests(chosen.log_file,
                 chosen.shows_passwords ? RequestLog::Credentials::kShown : RequestLog::Credentials::kMasked) {
    for (const auto& [place, fault] : chosen.faults) faults.Set(place, fault);
  }

  const Settings& settings;
  FaultPlan faults;
  Site site;
  Archive archive;
  ActivityLog activity{};
  std::unique_ptr<PictureSource> pictures;
  RequestLog requests;
};

}  // namespace orbelcast::camera_server
