#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "toolkit/controls.h"

namespace orbelcast {

struct VideoServerPushEvents;

/// The types of the interface. Boolean and Integer are 16 bits wide, Long 32 bits signed.
enum class ValueType { kNone, kBoolean, kInteger, kLong, kSingle, kText, kData, kPicture, kVariant };

struct ArgumentEntry {
  std::string_view name;
  ValueType type;
  bool optional = false;
  bool by_value = false;  ///< All others are references: what a callee writes, the caller sees.
};

struct PropertyEntry {
  std::string_view name;
  std::uint32_t id;
  ValueType type;
  bool writable;
};

struct MethodEntry {
  std::string_view name;
  std::uint32_t id;
  std::span<const ArgumentEntry> arguments;
  ValueType result;
};

struct EventEntry {
  std::string_view name;
  std::uint32_t id;
  std::span<const ArgumentEntry> arguments;
};

/// The one table of VideoServerPush's interface: every member with its dispatch id, in the interface's own order.
namespace video_server_push_interface {
std::span<const PropertyEntry> Properties();
std::span<const MethodEntry> Methods();
std::span<const EventEntry> Events();
}  // namespace video_server_push_interface

/// One argument of an event while it is being raised: a pointer to the value, which a listener may change.
using EventArgument = std::variant<bool*, std::int16_t*, std::int32_t*, float*, std::string*, DropData*>;
using EventListener = std::function<void(const EventEntry& event, std::span<const EventArgument> arguments)>;

/// Calls `listener` for every event of the control, with its entry and its arguments in the interface's order.
void ListenToAll(VideoServerPushEvents& events, EventListener listener);

}  // namespace orbelcast
