#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

#include "orbelcast/orbelcast.h"

namespace orbelcast::server {

/// A call's arguments and result in memory of their own, for a call that may go on when its caller has returned.
class KeptCall {
 public:
  /// Copies arguments that are well-formed: values, texts, and the variables that references point to.
  explicit KeptCall(const Arguments& given);
  ~KeptCall();
  KeptCall(const KeptCall&) = delete;
  KeptCall& operator=(const KeptCall&) = delete;

  Arguments* Get() { return &arguments_; }

  /// Gives the caller what the call wrote through references, and its result; that is cleared where `result` is null.
  void HandOver(const Arguments& given, Variant* result);

  Variant result{};
  std::uint32_t wrong_argument = 0;

 private:
  Variant Copy(const Variant& value);

  std::deque<std::string> texts_;
  std::vector<Variant> values_;
  std::vector<Variant> variables_;  // at the positions of the references to them
  std::vector<Variant> before_;
  std::vector<std::int32_t> names_;
  Arguments arguments_{};
};

}  // namespace orbelcast::server
