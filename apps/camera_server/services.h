#pragma once

#include <chrono>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

#include "camera_server/addresses.h"
#include "camera_server/faults.h"
#include "camera_server/logs.h"
#include "camera_server/pictures.h"
#include "camera_server/settings.h"

namespace orbelcast::camera_server {

/// The inputs, outputs and alerts of the site that the cameras watch, as they stand. Numbers count from 1. Thread-safe.
class Site {
 public:
  enum class Kind { kInput, kOutput, kAlert };

  explicit Site(const Settings& settings)
      : contacts_{{Kind::kInput, settings.inputs}, {Kind::kOutput, settings.outputs}, {Kind::kAlert, settings.alerts}} {
  }

  /// False where there is none of that number. An alert that is on goes off by itself after kAlertTime.
  bool Switch(Kind kind, int number, bool is_on) {
    const std::lock_guard lock(mutex_);
    std::vector<Contact>& contacts = contacts_.at(kind);
    if (number < 1 || number > static_cast<int>(contacts.size())) return false;
    contacts.at(static_cast<std::size_t>(number - 1)).is_on = is_on;
    if (kind == Kind::kAlert) activated_[number] = Clock::now();
    return true;
  }

  std::vector<Contact> All(Kind kind) const {
    const std::lock_guard lock(mutex_);
    std::vector<Contact> contacts = contacts_.at(kind);
    if (kind != Kind::kAlert) return contacts;
    for (const auto& [number, time] : activated_) {
      if (Clock::now() - time >= kAlertTime) contacts.at(static_cast<std::size_t>(number - 1)).is_on = false;
    }
    return contacts;
  }

 private:
  using Clock = std::chrono::steady_clock;
  mutable std::mutex mutex_;
  std::map<Kind, std::vector<Contact>> contacts_;
  std::map<int, Clock::time_point> activated_;  // alerts by number
};

/// All that the server works with and shows; each is thread-safe.
struct Services {
  /// `chosen` outlives this. Throws std::exception with what is wrong with a folder, a file or a fault.
  explicit Services(const Settings& chosen)
      : settings(chosen),
        faults(static_cast<int>(chosen.cameras.size())),
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
