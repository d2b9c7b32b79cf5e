#pragma once

#include <chrono>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "settings.h"

namespace orbelcast::camera_server {

/// The house's inputs, outputs and alerts as they stand. Numbers count from 1. Thread-safe.
class Site {
 public:
  /// `settings` outlives this.
  explicit Site(const Settings& settings);

  /// These are false where there is none of that number.
  bool SwitchOutput(int number, bool is_on);
  bool SwitchInput(int number, bool is_on);
  /// An alert that was activated is active for kAlertTime.
  bool ActivateAlert(int number);

  struct Item {
    const std::string& name;  ///< the settings'
    bool is_on;
  };
  std::vector<Item> Outputs() const;
  std::vector<Item> Inputs() const;
  std::vector<Item> Alerts() const;

 private:
  using Clock = std::chrono::steady_clock;
  const Settings& settings_;
  mutable std::mutex mutex_;
  std::vector<bool> outputs_;
  std::vector<bool> inputs_;
  std::vector<std::optional<Clock::time_point>> activated_;
};

}  // namespace orbelcast::camera_server
