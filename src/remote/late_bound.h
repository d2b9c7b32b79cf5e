#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "json/json.h"
#include "orbelcast/orbelcast.h"
#include "remote/variant_json.h"

namespace orbelcast {

/// A control's members, reached by name through its dispatch interface alone, as any late-bound host does.
///
/// Failures are thrown as ScriptError.
class LateBound {
 public:
  /// `control` is the caller's and may be released in the middle of a call: nothing here counts a reference.
  explicit LateBound(server::IDispatch& control) : control_(control) {}
  /// Keeps the reference that it is given.
  explicit LateBound(server::Held<server::IDispatch> kept) : kept_(std::move(kept)), control_(*kept_.Get()) {}

  Json Get(const std::string& property);
  /// Writes the property; returns the caller's variable, of the property's type, as the control left it.
  Json Put(const std::string& property, const std::string& word);
  /// Calls the method with the words as arguments, and returns its result; `device_context` gives the number of a
  /// surface by its name.
  Json Call(const std::string& method, std::vector<std::string> words,
            const std::function<std::optional<std::int32_t>(const std::string& name)>& device_context,
            BulkForm bulk = BulkForm::kDigest);

 private:
  /// The member of that name and one of those kinds (MemberKind, `kind` for people).
  const server::MemberInfo& Find(const std::string& name, std::uint16_t member_kind, const char* kind);
  void Invoke(const server::MemberInfo& member, std::uint16_t kind, server::Arguments& arguments,
              server::Variant* result);

  const server::Held<server::IDispatch> kept_;
  server::IDispatch& control_;
};

/// Calls `each` for every member of a class or a control, in the interface's own order.
void ForEachMember(server::IMemberList& members, const std::function<void(const server::MemberInfo&)>& each);

}  // namespace orbelcast
