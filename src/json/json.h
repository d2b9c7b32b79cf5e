#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace orbelcast {

struct JsonMember;

/// A JSON value. An object keeps the order in which it was filled, and two are equal if that is the same as well. A
/// whole number is signed if it is negative, so that equal numbers are equal values.
class Json {
 public:
  using Elements = std::vector<Json>;
  using Members = std::vector<JsonMember>;
  using Value = std::variant<std::nullptr_t, bool, std::int64_t, std::uint64_t, double, std::string, Elements, Members>;

  Json() noexcept;
  Json(const Json&);
  Json(Json&&) noexcept;
  Json& operator=(const Json&);
  Json& operator=(Json&&) noexcept;
  ~Json();

  // NOLINTBEGIN(google-explicit-constructor): values become JSON where it is wanted.
  Json(std::nullptr_t) noexcept : Json() {}
  /// Of a Boolean or a whole number; a pointer is neither.
  template <std::integral Number>
  Json(Number value);
  Json(double value);
  Json(float value) = delete;  ///< NumberToJson keeps it short.
  Json(const char* text) : Json(std::string(text)) {}
  Json(std::string_view text) : Json(std::string(text)) {}
  Json(std::string text);
  Json(const std::vector<std::string>& texts);
  /// An object: Json{{"x", 1}, {"y", 2}}.
  Json(std::initializer_list<JsonMember> members);
  // NOLINTEND(google-explicit-constructor)

  static Json Object();
  static Json Array(std::initializer_list<Json> elements = {});

  /// The object's member of that name, null if it is new. A value that is not an object becomes one. The reference is
  /// valid until the next new member.
  Json& operator[](std::string_view name);
  /// Sets the members of `other`, if it is an object.
  void Update(const Json& other);
  /// Adds an element to the array. A value that is not an array becomes one.
  void Append(Json element);
  /// Calls `change` with each text in it, at any depth; members' names are none.
  void ForEachText(const std::function<void(std::string& text)>& change);

  /// The value as one of the types of Value: `Get<std::string>()`, `Get<Json::Members>()`. Null if it is of another.
  template <typename Alternative>
  const Alternative* Get() const {
    return std::get_if<Alternative>(&value_);
  }
  template <typename Alternative>
  Alternative* Get() {
    return std::get_if<Alternative>(&value_);
  }
  /// The object's member of that name; null where there is none.
  const Json* Find(std::string_view name) const;
  const Value& Variant() const { return value_; }
  bool operator==(const Json& other) const;

 private:
  Value value_;
};

struct JsonMember {
  std::string name;
  Json value;

  bool operator==(const JsonMember&) const = default;
};

template <std::integral Number>
Json::Json(Number value) {
  if constexpr (std::same_as<Number, bool>) {
    value_ = value;
  } else if (value < 0) {
    value_ = static_cast<std::int64_t>(value);
  } else {
    value_ = static_cast<std::uint64_t>(value);
  }
}

/// A number as JSON: a whole one of up to 2^24 without decimals, others with no more digits than tell it apart from its
/// neighbours; null if it is not finite.
Json NumberToJson(float number);

/// `value` on one line, without a line break. Texts from a server may be any bytes: what is not UTF-8 becomes U+FFFD,
/// and what drives a terminal is escaped.
std::string ToLine(const Json& value);
/// The same on as many lines as it takes, indented.
std::string ToLines(const Json& value);
/// On several lines, each text as it is. Nothing if one of them is not UTF-8.
std::optional<std::string> ToExactText(const Json& value);

/// How deep arrays and objects may be nested in a text that is parsed; a deeper one is refused.
inline constexpr std::size_t kMaxJsonDepth = 32;

/// The value of a text, which nobody need trust; nothing if it is not JSON, or too deep. Of several members of one name
/// the last counts.
std::optional<Json> ParseJson(std::string_view text);

}  // namespace orbelcast
