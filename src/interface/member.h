#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "toolkit/controls.h"
#include "toolkit/surface.h"

namespace orbelcast {

struct VideoServerPushEvents;

/// The types of the interface. Boolean and Integer are 16 bits wide, Long 32 bits signed.
enum class ValueType { kNone, kBoolean, kInteger, kLong, kSingle, kText, kData, kPicture, kVariant };

/// An argument, or a property's new value, in the type that its entry gives it.
using ArgumentValue = std::variant<std::monostate, bool, std::int16_t, std::int32_t, float, std::string>;

/// A member's result: nothing, a scalar, a text, bytes, or a picture (which may be missing).
using ResultValue = std::variant<std::monostate, bool, std::int16_t, std::int32_t, float, std::string,
                                 std::vector<std::uint8_t>, std::optional<Surface>>;

/// One argument of an event while it is being raised: a pointer to the value, which a listener may change.
using EventArgument = std::variant<bool*, std::int16_t*, std::int32_t*, float*, std::string*, DropData*>;

struct EventEntry;
using EventListener = std::function<void(const EventEntry& event, std::span<const EventArgument> arguments)>;

// The entries of a class's members. Every name and text is a literal, so a 0 follows it. `control` is a pointer
// to an object of the class that the entry belongs to; a call through an entry may end the control.

struct ArgumentEntry {
  std::string_view name;
  ValueType type;
  bool optional = false;
  bool by_value = false;  ///< All others are references: the caller sees what a callee writes.
};

struct PropertyEntry {
  std::string_view name;
  std::uint32_t id;
  ValueType type;
  bool writable;
  std::string_view text;  ///< Its meaning with its unit, for people: one or more sentences.
  ResultValue (*get)(void* control);
  /// Leaves the control's corrected value in `value`, which is of the property's type. Null for a read-only property.
  void (*put)(void* control, ArgumentValue& value);
};

struct MethodEntry {
  std::string_view name;
  std::uint32_t id;
  std::span<const ArgumentEntry> arguments;
  ValueType result;
  std::string_view text;
  /// `arguments` are of the types of the entry's, none left out; the method's changes to them stay.
  ResultValue (*call)(void* control, std::span<ArgumentValue> arguments);
};

struct EventEntry {
  std::string_view name;
  std::uint32_t id;
  std::span<const ArgumentEntry> arguments;
  std::string_view text;
  /// Calls `listener` at each raise, with `entry` and the arguments in the interface's order, while the events live.
  void (*listen)(VideoServerPushEvents& events, const EventEntry& entry, std::shared_ptr<EventListener> listener);
};

/// A text that a container keeps for the control under a key.
struct PersistedEntry {
  std::string_view key;
  std::string_view text;
};

/// The interface of one class, in the interface's own order. Every listing, table and page of it is made from this.
struct ControlInterface {
  std::string_view name;
  std::string_view text;
  std::span<const PropertyEntry> properties;
  std::span<const MethodEntry> methods;
  std::span<const EventEntry> events;
  std::span<const PersistedEntry> persisted;
};

}  // namespace orbelcast
