#pragma once

#include <vector>

#include "orbelcast/orbelcast.h"
#include "server/control_class.h"

namespace orbelcast::server {

/// A class's members in the form that hosts read: properties, methods, events, in the interface's own order.
class MemberList {
 public:
  explicit MemberList(const ControlClass& control_class);
  MemberList(const MemberList&) = delete;
  MemberList& operator=(const MemberList&) = delete;

  const std::vector<MemberInfo>& Members() const { return members_; }

 private:
  void Add(MemberInfo member, std::span<const ArgumentEntry> arguments);

  std::vector<MemberInfo> members_;
  std::vector<std::vector<ArgumentInfo>> arguments_;
};

/// The list of a class, made once; it lives as long as the library is loaded.
const MemberList& MembersOf(const ControlClass& control_class);

}  // namespace orbelcast::server
