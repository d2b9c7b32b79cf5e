#include "site.h"

#include <algorithm>
#include <cstddef>

#include "bounds.h"

namespace orbelcast::camera_server {

namespace {

std::vector<bool> StatesOf(const std::vector<Contact>& contacts) {
  std::vector<bool> states;
  states.reserve(contacts.size());
  for (const Contact& contact : contacts) states.push_back(contact.is_on);
  return states;
}

bool HasNumber(std::size_t count, int number) {
  return number >= 1 && static_cast<std::size_t>(number) <= count;
}

bool Switch(std::vector<bool>& states, int number, bool is_on) {
  if (!HasNumber(states.size(), number)) return false;
  states.at(static_cast<std::size_t>(number - 1)) = is_on;
  return true;
}

std::vector<Site::Item> Items(const std::vector<Contact>& contacts, const std::vector<bool>& states) {
  std::vector<Site::Item> items;
  for (std::size_t i = 0; i < contacts.size(); ++i) items.push_back({contacts.at(i).name, states.at(i)});
  return items;
}

}  // namespace

Site::Site(const Settings& settings)
    : settings_(settings),
      outputs_(StatesOf(settings.outputs)),
      inputs_(StatesOf(settings.inputs)),
      activated_(settings.alerts.size()) {}

bool Site::SwitchOutput(int number, bool is_on) {
  const std::lock_guard lock(mutex_);
  return Switch(outputs_, number, is_on);
}

bool Site::SwitchInput(int number, bool is_on) {
  const std::lock_guard lock(mutex_);
  return Switch(inputs_, number, is_on);
}

bool Site::ActivateAlert(int number) {
  const std::lock_guard lock(mutex_);
  if (!HasNumber(activated_.size(), number)) return false;
  activated_.at(static_cast<std::size_t>(number - 1)) = Clock::now();
  return true;
}

std::vector<Site::Item> Site::Outputs() const {
  const std::lock_guard lock(mutex_);
  return Items(settings_.outputs, outputs_);
}

std::vector<Site::Item> Site::Inputs() const {
  const std::lock_guard lock(mutex_);
  return Items(settings_.inputs, inputs_);
}

std::vector<Site::Item> Site::Alerts() const {
  const std::lock_guard lock(mutex_);
  const Clock::time_point now = Clock::now();
  std::vector<Item> items;
  for (std::size_t i = 0; i < activated_.size(); ++i) {
    const auto& activated = activated_.at(i);
    items.push_back({settings_.alerts.at(i), activated && now - *activated < kAlertTime});
  }
  return items;
}

}  // namespace orbelcast::camera_server
