#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "orbelcast/orbelcast.h"
#include "toolkit/surface.h"
#include "viewer/interface.h"

namespace orbelcast::server {

/// An argument, or a property's new value, in the type that the interface table gives it.
using ArgumentValue = std::variant<std::monostate, bool, std::int16_t, std::int32_t, float, std::string>;

/// What a member returns: nothing, a scalar, a text, bytes, or a picture (which may be missing).
using ResultValue = std::variant<std::monostate, bool, std::int16_t, std::int32_t, float, std::string,
                                 std::vector<std::uint8_t>, std::optional<Surface>>;

/// The variant type that hosts see for a type of the interface.
VariantType TypeFor(ValueType type);

/// What an argument of that type is when it is left out: 0, False, an empty text.
ArgumentValue DefaultOf(ValueType type);

/// Reads a variant, or the variable that it refers to, as a value of `type`, which is an argument's. A code of failure
/// leaves `value` as it was.
Result FromVariant(const Variant& variant, ValueType type, ArgumentValue& value);

/// A variant of the value's own type. Its text lives in `value`.
Variant BorrowingVariant(const ArgumentValue& value);

/// Puts `value` into a variable of the caller's: in the variable's own type where that can hold it. What was there is
/// cleared. A text gets an owner made by `own`.
template <typename OwnText>
void WriteBack(const ArgumentValue& value, Variant& variable, OwnText own);

/// The value as the type `type` of a variant, its text in `text`; kEmpty where that type cannot hold it.
Variant Convert(const ArgumentValue& value, std::uint16_t type, std::string& text);

template <typename OwnText>
void WriteBack(const ArgumentValue& value, Variant& variable, OwnText own) {
  std::string text;
  Variant converted = Convert(value, variable.type, text);
  if (converted.type == kEmpty) converted = BorrowingVariant(value);
  if (converted.type == kText) converted = own(std::string(converted.text, converted.size));
  Clear(variable);
  variable = converted;
}

}  // namespace orbelcast::server
