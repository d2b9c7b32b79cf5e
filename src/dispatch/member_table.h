#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "dispatch/value.h"
#include "interface/member.h"
#include "orbelcast/orbelcast.h"

namespace orbelcast::server {

/// A class's members in the form that hosts read: properties, methods, events, in the interface's own order. Made at
/// compile time of the interface's description.
template <const ControlInterface& Described>
class MemberTable {
  static constexpr std::size_t CountArguments() {
    std::size_t count = 0;
    for (const MethodEntry& method : Described.methods) count += method.arguments.size();
    for (const EventEntry& event : Described.events) count += event.arguments.size();
    return count;
  }

  // The arguments of all members, one member's after the other's. One more, because there may be none.
  using AllArguments = std::array<ArgumentInfo, CountArguments() + 1>;

  static constexpr AllArguments MakeArguments() {
    AllArguments infos{};
    std::size_t next = 0;
    const auto add = [&](std::span<const ArgumentEntry> arguments) {
      for (const ArgumentEntry& argument : arguments) {
        const int flags = (argument.optional ? kOptional : 0) | (argument.by_value ? 0 : kByReference);
        infos[next++] = {argument.name.data(), TypeFor(argument.type), static_cast<std::uint16_t>(flags), 0};
      }
    };
    for (const MethodEntry& method : Described.methods) add(method.arguments);
    for (const EventEntry& event : Described.events) add(event.arguments);
    return infos;
  }
  static constexpr AllArguments kArguments = MakeArguments();

  template <typename Entry>
  static constexpr MemberInfo Describe(const Entry& entry, MemberKind kind, ValueType type) {
    MemberInfo member{};
    member.name = entry.name.data();
    member.id = static_cast<std::int32_t>(entry.id);
    member.kind = kind;
    member.type = TypeFor(type);
    return member;
  }

  static constexpr auto MakeMembers() {
    std::array<MemberInfo, Described.properties.size() + Described.methods.size() + Described.events.size()> members{};
    std::size_t next = 0;
    std::size_t argument = 0;
    const auto add_callable = [&](MemberInfo member, std::size_t arguments) {
      member.argument_count = static_cast<std::uint16_t>(arguments);
      member.arguments = &kArguments[argument];
      argument += arguments;
      members[next++] = member;
    };
    for (const PropertyEntry& property : Described.properties) {
      members[next] = Describe(property, kPropertyMember, property.type);
      members[next++].writable = property.writable ? 1 : 0;
    }
    for (const MethodEntry& method : Described.methods) {
      add_callable(Describe(method, kMethodMember, method.result), method.arguments.size());
    }
    for (const EventEntry& event : Described.events) {
      add_callable(Describe(event, kEventMember, ValueType::kNone), event.arguments.size());
    }
    return members;
  }

 public:
  static constexpr auto kMembers = MakeMembers();
};

}  // namespace orbelcast::server
