#include "dispatch/value.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <string_view>
#include <variant>

#include "toolkit/ascii.h"
#include "toolkit/rounding.h"

namespace orbelcast::server {

namespace {

/// A variant's value before it takes the type that is wanted. A text lives in the variant.
using Scalar = std::variant<std::monostate, bool, std::int64_t, double, std::string_view>;

// Enough for any number that to_chars writes with these precisions.
constexpr std::size_t kNumberLength = 64;
// The digits of a number that survive in a text, as the platform's scripts show them.
constexpr int kSingleDigits = 7;
constexpr int kDoubleDigits = 15;

/// The number that a text spells, in the C locale; nothing where it spells none, or more than a number.
std::optional<double> ParseNumber(std::string_view text) {
  text = Trimmed(text);
  if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(number)) return std::nullopt;
  return number;
}

template <typename Number>
std::string FormatFloating(Number number, int digits) {
  std::array<char, kNumberLength> buffer;
  const auto end =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, std::chars_format::general, digits);
  std::string text(buffer.data(), end.ptr);
  for (char& c : text) {
    if (c == 'e') c = 'E';
  }
  return text;
}

Result ReadScalar(const Variant& variant, Scalar& scalar) {
  switch (variant.type) {
    case kEmpty:
      scalar = std::monostate();
      return S_OK;
    case kInteger:
      scalar = std::int64_t{variant.i16};
      return S_OK;
    case kLong:
      scalar = std::int64_t{variant.i32};
      return S_OK;
    case kLongLong:
      scalar = variant.i64;
      return S_OK;
    case kSingle:
      scalar = double{variant.f32};
      return S_OK;
    case kDouble:
      scalar = variant.f64;
      return S_OK;
    case kBoolean:
      scalar = variant.i16 != 0;
      return S_OK;
    case kText:
      if (variant.text == nullptr && variant.size > 0) return E_POINTER;
      scalar = std::string_view(variant.text, variant.size);
      return S_OK;
    case kNull:
    case kMissing:
    case kObject:
    case kBytes:
      return DISP_E_TYPEMISMATCH;
    default:
      return DISP_E_BADVARTYPE;
  }
}

Result ToBoolean(const Scalar& scalar, bool& value) {
  if (const auto* text = std::get_if<std::string_view>(&scalar)) {
    const std::string_view word = Trimmed(*text);
    if (EqualIgnoringCase(word, "true") || EqualIgnoringCase(word, "false")) {
      value = word.size() == 4;
      return S_OK;
    }
    const auto number = ParseNumber(word);
    if (!number) return DISP_E_TYPEMISMATCH;
    value = *number != 0;
    return S_OK;
  }
  if (const auto* boolean = std::get_if<bool>(&scalar)) {
    value = *boolean;
  } else if (const auto* integer = std::get_if<std::int64_t>(&scalar)) {
    value = *integer != 0;
  } else if (const auto* floating = std::get_if<double>(&scalar)) {
    value = *floating != 0;
  } else {
    value = false;
  }
  return S_OK;
}

Result ToFloating(const Scalar& scalar, double& value) {
  if (const auto* text = std::get_if<std::string_view>(&scalar)) {
    const auto number = ParseNumber(*text);
    if (!number) return DISP_E_TYPEMISMATCH;
    value = *number;
  } else if (const auto* boolean = std::get_if<bool>(&scalar)) {
    value = *boolean ? -1 : 0;
  } else if (const auto* integer = std::get_if<std::int64_t>(&scalar)) {
    value = static_cast<double>(*integer);
  } else if (const auto* floating = std::get_if<double>(&scalar)) {
    value = *floating;
  } else {
    value = 0;
  }
  return S_OK;
}

template <typename Integer>
Result ToInteger(const Scalar& scalar, Integer& value) {
  // A double holds every integer of these widths exactly, and a wider one still as one that is out of range.
  static_assert(sizeof(Integer) <= sizeof(std::int32_t));
  double number = 0;
  if (const Result result = ToFloating(scalar, number); !Succeeded(result)) return result;
  // A value halfway beyond an end goes to the even number: the lowest is one, the highest is not.
  constexpr double kHalf = 0.5;
  if (!(number >= std::numeric_limits<Integer>::min() - kHalf &&
        number < std::numeric_limits<Integer>::max() + kHalf)) {
    return DISP_E_OVERFLOW;
  }
  value = static_cast<Integer>(RoundToEven(number));
  return S_OK;
}

Result ToSingle(const Scalar& scalar, float& value) {
  double number = 0;
  if (const Result result = ToFloating(scalar, number); !Succeeded(result)) return result;
  if (std::isfinite(number) && std::abs(number) > std::numeric_limits<float>::max()) return DISP_E_OVERFLOW;
  value = static_cast<float>(number);
  return S_OK;
}

std::string ToText(const Scalar& scalar, bool single) {
  if (const auto* text = std::get_if<std::string_view>(&scalar)) return std::string(*text);
  if (const auto* boolean = std::get_if<bool>(&scalar)) return *boolean ? "True" : "False";
  if (const auto* integer = std::get_if<std::int64_t>(&scalar)) return std::to_string(*integer);
  if (const auto* floating = std::get_if<double>(&scalar)) {
    return single ? FormatFloating(static_cast<float>(*floating), kSingleDigits)
                  : FormatFloating(*floating, kDoubleDigits);
  }
  return {};
}

template <typename Value, typename Convert>
Result Assign(Convert convert, ArgumentValue& value) {
  Value converted{};
  if (const Result result = convert(converted); !Succeeded(result)) return result;
  value = std::move(converted);
  return S_OK;
}

}  // namespace

ArgumentValue DefaultOf(ValueType type) {
  ArgumentValue value;
  FromVariant(Variant{}, type, value);
  return value;
}

Result FromVariant(const Variant& variant, ValueType type, ArgumentValue& value) {
  if (variant.type == kReference) {
    if (variant.reference == nullptr) return E_POINTER;
    if (variant.reference->type == kReference) return DISP_E_BADVARTYPE;
    return FromVariant(*variant.reference, type, value);
  }
  Scalar scalar;
  if (const Result result = ReadScalar(variant, scalar); !Succeeded(result)) return result;
  switch (type) {
    case ValueType::kBoolean:
      return Assign<bool>([&](bool& boolean) { return ToBoolean(scalar, boolean); }, value);
    case ValueType::kInteger:
      return Assign<std::int16_t>([&](std::int16_t& integer) { return ToInteger(scalar, integer); }, value);
    case ValueType::kLong:
      return Assign<std::int32_t>([&](std::int32_t& integer) { return ToInteger(scalar, integer); }, value);
    case ValueType::kSingle:
      return Assign<float>([&](float& number) { return ToSingle(scalar, number); }, value);
    case ValueType::kText:
      value = ToText(scalar, variant.type == kSingle);
      return S_OK;
    case ValueType::kNone:
    case ValueType::kData:
    case ValueType::kPicture:
    case ValueType::kVariant:
      break;
  }
  return DISP_E_TYPEMISMATCH;
}

Variant BorrowingVariant(const ArgumentValue& value) {
  if (const auto* boolean = std::get_if<bool>(&value)) return MakeBoolean(*boolean);
  if (const auto* integer = std::get_if<std::int16_t>(&value)) return MakeInteger(*integer);
  if (const auto* number = std::get_if<std::int32_t>(&value)) return MakeLong(*number);
  if (const auto* text = std::get_if<std::string>(&value)) return MakeText(*text);
  Variant variant{};
  if (const auto* single = std::get_if<float>(&value)) {
    variant.type = kSingle;
    variant.f32 = *single;
  }
  return variant;
}

Variant Convert(const ArgumentValue& value, std::uint16_t type, std::string& text) {
  const Variant source = BorrowingVariant(value);
  Variant target{};
  Scalar scalar;
  if (!Succeeded(ReadScalar(source, scalar))) return target;
  ArgumentValue converted;
  const auto as = [&](ValueType wanted) {
    return Succeeded(FromVariant(source, wanted, converted)) ? BorrowingVariant(converted) : Variant{};
  };
  switch (type) {
    case kBoolean:
      return as(ValueType::kBoolean);
    case kInteger:
      return as(ValueType::kInteger);
    case kLong:
      return as(ValueType::kLong);
    case kSingle:
      return as(ValueType::kSingle);
    case kLongLong:
      if (Succeeded(FromVariant(source, ValueType::kLong, converted))) {
        target.type = kLongLong;
        target.i64 = std::get<std::int32_t>(converted);
      }
      return target;
    case kDouble:
      if (Succeeded(ToFloating(scalar, target.f64))) target.type = kDouble;
      return target;
    case kText:
      text = ToText(scalar, source.type == kSingle);
      return MakeText(text);
    default:
      return target;
  }
}

}  // namespace orbelcast::server
