#pragma once

#include <functional>
#include <map>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "orbelcast/orbelcast.h"
#include "platform/platform.h"
#include "server/value.h"
#include "viewer/interface.h"

namespace orbelcast {
class UserControl1;
class VideoServerPush;
}  // namespace orbelcast

namespace orbelcast::server {

/// The keys and texts of a property bag.
using PersistedProperties = std::map<std::string, std::string, std::less<>>;

/// One control, as the control server sees it: whatever its class, members are reached through the entries of its
/// table.
///
/// Destroying it releases the control, which may be in the middle of one of these calls; the call then returns soon.
class ControlModel {
 public:
  virtual ~ControlModel() = default;

  virtual ResultValue Get(const PropertyEntry& property) = 0;
  /// Leaves in `value` what the control made of it.
  virtual void Put(const PropertyEntry& property, ArgumentValue& value) = 0;
  /// `arguments` are of the types that the method's entry gives, none left out; what the method writes to them stays.
  virtual ResultValue Call(const MethodEntry& method, std::span<ArgumentValue> arguments) = 0;

  virtual void Place(float width, float height) = 0;
  virtual void Hide() = 0;
  virtual void Load(PersistedProperties) {}
  virtual void ListenToAll(EventListener) {}

  virtual VideoServerPush* Viewer() { return nullptr; }
  virtual UserControl1* Player() { return nullptr; }
};

/// What differs between the classes of controls.
struct ControlClass {
  Guid id;
  Guid events_id;
  std::string_view name;
  std::string_view description;
  std::span<const PropertyEntry> (*properties)();
  std::span<const MethodEntry> (*methods)();
  std::span<const EventEntry> (*events)();
  std::unique_ptr<ControlModel> (*create)(Platform& platform);
};

std::span<const ControlClass> Classes();

/// How a member of `Control` is reached. The tables of these stand beside the class's entry, a line a member.
template <typename Control>
struct PropertyBinding {
  std::string_view name;
  ResultValue (*get)(Control& control);
  void (*put)(Control& control, ArgumentValue& value) = nullptr;
};
template <typename Control>
struct MethodBinding {
  std::string_view name;
  ResultValue (*call)(Control& control, std::span<ArgumentValue> arguments);
};

/// A model by bindings: what all classes' models have in common.
template <typename Control>
class BoundModel : public ControlModel {
 public:
  BoundModel(std::shared_ptr<Control> control, std::span<const PropertyBinding<Control>> properties,
             std::span<const MethodBinding<Control>> methods)
      : control_(std::move(control)), properties_(properties), methods_(methods) {}

  ResultValue Get(const PropertyEntry& property) override { return Named(properties_, property.name).get(*control_); }
  void Put(const PropertyEntry& property, ArgumentValue& value) override {
    Named(properties_, property.name).put(*control_, value);
  }
  ResultValue Call(const MethodEntry& method, std::span<ArgumentValue> arguments) override {
    return Named(methods_, method.name).call(*control_, arguments);
  }

 protected:
  Control& Controlled() { return *control_; }

 private:
  template <typename Binding>
  static const Binding& Named(std::span<const Binding> bindings, std::string_view name) {
    for (const Binding& binding : bindings) {
      if (binding.name == name) return binding;
    }
    throw std::out_of_range("a member of the table without a binding");
  }

  const std::shared_ptr<Control> control_;
  const std::span<const PropertyBinding<Control>> properties_;
  const std::span<const MethodBinding<Control>> methods_;
};

/// A method that returns nothing, as a binding calls it.
template <typename Control, auto Member>
ResultValue Sub(Control& control, std::span<ArgumentValue> arguments) {
  Member(control, arguments);
  return {};
}

// What bindings read their arguments with.
inline bool& Boolean(ArgumentValue& value) {
  return std::get<bool>(value);
}
inline std::int16_t& Integer(ArgumentValue& value) {
  return std::get<std::int16_t>(value);
}
inline std::int32_t& Long(ArgumentValue& value) {
  return std::get<std::int32_t>(value);
}
inline std::string& Text(ArgumentValue& value) {
  return std::get<std::string>(value);
}

/// The class's models.
std::unique_ptr<ControlModel> CreateVideoServerPush(Platform& platform);
std::unique_ptr<ControlModel> CreateUserControl1(Platform& platform);
/// A model of a viewer that stays somebody else's.
std::unique_ptr<ControlModel> ModelOf(VideoServerPush& viewer);

}  // namespace orbelcast::server
