#include "server/member_list.h"

#include <map>

namespace orbelcast::server {

namespace {

// The tables' names are literals, so a 0 stands behind them.
template <typename Entry>
MemberInfo Describe(const Entry& entry, MemberKind kind, ValueType type) {
  MemberInfo member{};
  member.name = entry.name.data();
  member.id = static_cast<std::int32_t>(entry.id);
  member.kind = kind;
  member.type = TypeFor(type);
  return member;
}

}  // namespace

MemberList::MemberList(const ControlClass& control_class) {
  for (const PropertyEntry& property : control_class.properties()) {
    MemberInfo member = Describe(property, kPropertyMember, property.type);
    member.writable = property.writable ? 1 : 0;
    Add(member, {});
  }
  for (const MethodEntry& method : control_class.methods()) {
    Add(Describe(method, kMethodMember, method.result), method.arguments);
  }
  for (const EventEntry& event : control_class.events()) {
    Add(Describe(event, kEventMember, ValueType::kNone), event.arguments);
  }
}

void MemberList::Add(MemberInfo member, std::span<const ArgumentEntry> arguments) {
  std::vector<ArgumentInfo>& infos = arguments_.emplace_back();
  for (const ArgumentEntry& argument : arguments) {
    const int flags = (argument.optional ? kOptional : 0) | (argument.by_value ? 0 : kByReference);
    infos.push_back({argument.name.data(), TypeFor(argument.type), static_cast<std::uint16_t>(flags), 0});
  }
  member.argument_count = static_cast<std::uint16_t>(infos.size());
  member.arguments = infos.data();
  members_.push_back(member);
}

// Made once and whole: it is read on any thread.
const MemberList& MembersOf(const ControlClass& control_class) {
  static const std::map<const ControlClass*, MemberList> lists = [] {
    std::map<const ControlClass*, MemberList> made;
    for (const ControlClass& each : Classes()) made.try_emplace(&each, each);
    return made;
  }();
  return lists.at(&control_class);
}

}  // namespace orbelcast::server
