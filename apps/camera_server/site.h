#pragma once

#include <chrono>
#include <map>
#include <mutex>
#include <string>
#include <vector>

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

}  // namespace orbelcast::camera_server
