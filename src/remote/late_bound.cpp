#include "remote/late_bound.h"

#include <array>
#include <cstdint>
#include <cstdio>

#include "remote/script_error.h"
#include "remote/variant_json.h"

namespace orbelcast {

namespace {

using server::MemberInfo;
using server::Variant;

/// A variable that clears itself.
struct Variable : Variant {
  Variable() : Variant{} {}
  explicit Variable(const Variant& value) : Variant(value) {}
  ~Variable() { Clear(*this); }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;
};

std::string CodeText(server::Result result) {
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "0x%08x", static_cast<std::uint32_t>(result));
  return text.data();
}

std::string ArgumentList(const MemberInfo& method) {
  std::string list;
  for (std::uint16_t i = 0; i < method.argument_count; ++i) {
    const bool optional = (method.arguments[i].flags & server::kOptional) != 0;
    list += std::string(" ") + (optional ? "[" : "") + method.arguments[i].name + (optional ? "]" : "");
  }
  return list.empty() ? " no arguments" : list;
}

void CheckCount(const MemberInfo& method, std::size_t given) {
  std::size_t needed = 0;
  while (needed < method.argument_count && (method.arguments[needed].flags & server::kOptional) == 0) ++needed;
  if (given < needed || given > method.argument_count) {
    throw ScriptError(std::string(method.name) + " takes" + ArgumentList(method));
  }
}

}  // namespace

Json LateBound::Get(const std::string& property) {
  const MemberInfo& member = Find(property, server::kPropertyMember, "property");
  Variable value;
  server::Arguments none{};
  Invoke(member, server::kPropertyGet, none, &value);
  return ToJson(value);
}

Json LateBound::Put(const std::string& property, const std::string& word) {
  const MemberInfo& member = Find(property, server::kPropertyMember, "property");
  if (member.writable == 0) throw ScriptError(property + " can only be read");
  Variable variable(ToVariant(word, member.type, property));
  Variant reference = server::MakeReference(variable);
  server::Arguments arguments{&reference, 1, 0, nullptr};
  Invoke(member, server::kPropertyPut, arguments, nullptr);
  return ToJson(variable);
}

Json LateBound::Call(const std::string& method, std::vector<std::string> words,
                     const std::function<std::optional<std::int32_t>(const std::string& name)>& device_context,
                     BulkForm bulk) {
  const MemberInfo& member = Find(method, server::kMethodMember, "method");
  CheckCount(member, words.size());
  std::vector<Variable> variables(words.size());
  std::vector<Variant> references;
  for (std::size_t i = 0; i < words.size(); ++i) {
    const auto& argument = member.arguments[i];
    const auto surface = argument.type == server::kLong ? device_context(words[i]) : std::nullopt;
    static_cast<Variant&>(variables[i]) =
        surface ? server::MakeLong(*surface) : ToVariant(words[i], argument.type, argument.name);
    references.push_back(server::MakeReference(variables[i]));
  }
  server::Arguments arguments{references.data(), static_cast<std::uint32_t>(references.size()), 0, nullptr};
  Variable result;
  Invoke(member, server::kMethod, arguments, &result);
  return ToJson(result, bulk);
}

const MemberInfo& LateBound::Find(const std::string& name, std::uint16_t member_kind, const char* kind) {
  const char* const names[] = {name.c_str()};
  std::int32_t id = server::kUnknownId;
  const MemberInfo* found = nullptr;
  if (server::Succeeded(control_.GetIDsOfNames(names, 1, &id))) {
    server::Held<server::IMemberList> members;
    control_.QueryInterface(&server::IMemberList::kId, members.Put());
    ForEachMember(*members.Get(), [&](const MemberInfo& member) {
      if (member.id == id && member.kind == member_kind) found = &member;
    });
  }
  if (found == nullptr) throw ScriptError("there is no " + std::string(kind) + " '" + name + "'");
  return *found;
}

void LateBound::Invoke(const MemberInfo& member, std::uint16_t kind, server::Arguments& arguments, Variant* result) {
  const server::Result code = control_.Invoke(member.id, kind, &arguments, result, nullptr);
  if (!server::Succeeded(code)) throw ScriptError(std::string(member.name) + " answered " + CodeText(code));
}

void ForEachMember(server::IMemberList& members, const std::function<void(const MemberInfo&)>& each) {
  const std::uint32_t count = members.GetCount();
  for (std::uint32_t i = 0; i < count; ++i) {
    const MemberInfo* member = nullptr;
    if (server::Succeeded(members.GetMember(i, &member))) each(*member);
  }
}

}  // namespace orbelcast
