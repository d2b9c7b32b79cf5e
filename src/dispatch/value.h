#pragma once

#include <cstdint>
#include <string>

#include "interface/member.h"
#include "orbelcast/orbelcast.h"

namespace orbelcast::server {

/// The variant type that hosts see for a type of the interface.
constexpr VariantType TypeFor(ValueType type) {
  switch (type) {
    case ValueType::kNone:
      return kEmpty;
    case ValueType::kBoolean:
      return kBoolean;
    case ValueType::kInteger:
      return kInteger;
    case ValueType::kLong:
      return kLong;
    case ValueType::kSingle:
      return kSingle;
    case ValueType::kText:
      return kText;
    case ValueType::kData:
    case ValueType::kPicture:
      return kObject;
    case ValueType::kVariant:
      return kAny;
  }
  return kEmpty;
}

/// An argument that is left out has the value 0, False or an empty text.
ArgumentValue DefaultOf(ValueType type);

/// Reads a variant, or the variable that it refers to, as a value of `type`, which is an argument's. A code of failure
/// leaves `value` as it was.
Result FromVariant(const Variant& variant, ValueType type, ArgumentValue& value);

/// A variant of the value's own type. Its text lives in `value`.
Variant BorrowingVariant(const ArgumentValue& value);

/// Puts `value` into a variable of the caller's: in the variable's own type where that can hold it. The former value is
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
