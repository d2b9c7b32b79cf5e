#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>

#include "interface/member.h"
#include "toolkit/signal.h"

/// Declarations of members, and the entries that are derived from them. A declaration that does not fit its member does
/// not compile.
namespace orbelcast::interface {

template <typename T>
inline constexpr ValueType kTypeOf = ValueType::kNone;
template <>
inline constexpr ValueType kTypeOf<bool> = ValueType::kBoolean;
template <>
inline constexpr ValueType kTypeOf<std::int16_t> = ValueType::kInteger;
template <>
inline constexpr ValueType kTypeOf<std::int32_t> = ValueType::kLong;
template <>
inline constexpr ValueType kTypeOf<float> = ValueType::kSingle;
template <>
inline constexpr ValueType kTypeOf<std::string> = ValueType::kText;
template <>
inline constexpr ValueType kTypeOf<DropData> = ValueType::kData;
template <>
inline constexpr ValueType kTypeOf<std::optional<Surface>> = ValueType::kPicture;
template <>
inline constexpr ValueType kTypeOf<std::vector<std::uint8_t>> = ValueType::kVariant;

/// An argument's name. Arguments that may be left out come last.
struct Argument {
  const char* name;
  bool optional = false;

  constexpr Argument(const char* required) : name(required) {}  // implicit: most are given by name alone
  constexpr Argument(const char* given, bool may_be_left_out) : name(given), optional(may_be_left_out) {}
};
constexpr Argument Optional(const char* name) {
  return {name, true};
}

/// A property that can only be read has no `put`.
template <typename Control, typename Value>
struct ReadOnlyDeclaration {
  const char* name;
  std::uint32_t id;
  Value (Control::*get)() const;
  const char* text;
};

template <typename Control, typename Value, typename Put>
struct PropertyDeclaration : ReadOnlyDeclaration<Control, Value> {
  void (Control::*put)(Put);
};

/// `Pointer` is a pointer to the method, const or not.
template <typename Control, typename Pointer, typename... Args>
struct MethodDeclaration {
  const char* name;
  std::uint32_t id;
  Pointer call;
  std::array<Argument, sizeof...(Args)> arguments;
  const char* text;
};

template <typename... Args>
struct EventDeclaration {
  const char* name;
  std::uint32_t id;
  Signal<Args...> VideoServerPushEvents::*signal;
  std::array<Argument, sizeof...(Args)> arguments;
  const char* text;
};

template <typename Control, typename Value, typename Put>
constexpr auto Property(const char* name, std::uint32_t id, Value (Control::*get)() const, void (Control::*put)(Put),
                        const char* text) {
  static_assert(std::is_same_v<Value, std::remove_cvref_t<Put>>, "a property is read and written as one type");
  return PropertyDeclaration<Control, Value, Put>{{name, id, get, text}, put};
}
template <typename Control, typename Value>
constexpr auto ReadOnly(const char* name, std::uint32_t id, Value (Control::*get)() const, const char* text) {
  return ReadOnlyDeclaration<Control, Value>{name, id, get, text};
}
template <typename Control, typename Result, typename... Args>
constexpr auto Method(const char* name, std::uint32_t id, Result (Control::*call)(Args...),
                      std::array<Argument, sizeof...(Args)> arguments, const char* text) {
  return MethodDeclaration<Control, decltype(call), Args...>{name, id, call, arguments, text};
}
template <typename Control, typename Result, typename... Args>
constexpr auto Method(const char* name, std::uint32_t id, Result (Control::*call)(Args...) const,
                      std::array<Argument, sizeof...(Args)> arguments, const char* text) {
  return MethodDeclaration<Control, decltype(call), Args...>{name, id, call, arguments, text};
}
template <typename... Args>
constexpr auto Event(const char* name, std::uint32_t id, Signal<Args...> VideoServerPushEvents::*signal,
                     std::array<Argument, sizeof...(Args)> arguments, const char* text) {
  return EventDeclaration<Args...>{name, id, signal, arguments, text};
}

// Entries. Each is made of one element of a constant tuple, `Declared`, so that its functions need no look-up.

template <typename... Args>
constexpr auto ArgumentEntries(const std::array<Argument, sizeof...(Args)>& declared,
                               [[maybe_unused]] std::array<bool, sizeof...(Args)> by_value) {
  std::array<ArgumentEntry, sizeof...(Args)> entries{};
  [[maybe_unused]] std::size_t i = 0;
  ((entries[i] = {declared[i].name, kTypeOf<std::remove_cvref_t<Args>>, declared[i].optional, by_value[i]}, ++i), ...);
  return entries;
}

template <const auto& Declared, std::size_t I>
struct PropertyOf {
  static constexpr const auto& kDeclared = std::get<I>(Declared);

  template <typename Control, typename Value>
  static constexpr PropertyEntry Make(const ReadOnlyDeclaration<Control, Value>& declared) {
    static_assert(kTypeOf<Value> != ValueType::kNone, "a property's type is one of the interface's");
    return {declared.name,
            declared.id,
            kTypeOf<Value>,
            false,
            declared.text,
            [](void* control) -> ResultValue { return (static_cast<const Control*>(control)->*kDeclared.get)(); },
            nullptr};
  }
  template <typename Control, typename Value, typename Put>
  static constexpr PropertyEntry Make(const PropertyDeclaration<Control, Value, Put>& declared) {
    const ReadOnlyDeclaration<Control, Value>& readable = declared;
    PropertyEntry entry = Make(readable);
    entry.writable = true;
    entry.put = [](void* control, ArgumentValue& value) {
      (static_cast<Control*>(control)->*kDeclared.put)(std::get<Value>(value));
    };
    return entry;
  }
};

template <const auto& Declared, std::size_t I>
struct MethodOf {
  static constexpr const auto& kDeclared = std::get<I>(Declared);

  template <typename Control, typename Pointer, typename... Args>
  static constexpr MethodEntry Make(const MethodDeclaration<Control, Pointer, Args...>& declared) {
    using Result = std::invoke_result_t<Pointer, Control&, Args...>;
    return {declared.name,
            declared.id,
            kArguments<Args...>,
            kTypeOf<Result>,
            declared.text,
            [](void* control, std::span<ArgumentValue> values) -> ResultValue {
              return Call<Args...>(*static_cast<Control*>(control), values, std::index_sequence_for<Args...>());
            }};
  }
  // A method's arguments are references, also where the control has no use for that.
  template <typename... Args>
  static constexpr auto kArguments = ArgumentEntries<Args...>(kDeclared.arguments, {});

  template <typename... Args, typename Control, std::size_t... Places>
  static ResultValue Call(Control& control, [[maybe_unused]] std::span<ArgumentValue> values,
                          std::index_sequence<Places...>) {
    const auto call = [&] { return (control.*kDeclared.call)(std::get<std::remove_cvref_t<Args>>(values[Places])...); };
    if constexpr (std::is_void_v<decltype(call())>) {
      call();
      return {};
    } else {
      return call();
    }
  }
};

template <const auto& Declared, std::size_t I>
struct EventOf {
  static constexpr const auto& kDeclared = std::get<I>(Declared);

  template <typename... Args>
  static constexpr EventEntry Make(const EventDeclaration<Args...>& declared) {
    return {declared.name, declared.id, kArguments<Args...>, declared.text,
            [](VideoServerPushEvents& events, const EventEntry& entry, std::shared_ptr<EventListener> listener) {
              (events.*kDeclared.signal).Listen([&entry, listener = std::move(listener)](Args... args) {
                const std::array<EventArgument, sizeof...(Args)> arguments{EventArgument(&args)...};
                (*listener)(entry, arguments);
              });
            }};
  }
  template <typename... Args>
  static constexpr auto kArguments = ArgumentEntries<Args...>(kDeclared.arguments, {!std::is_reference_v<Args>...});
};

/// The entries of a constant tuple of declarations, as an array; `Of` is one of the templates above.
template <template <const auto&, std::size_t> typename Of, const auto& Declared>
inline constexpr auto kEntries = []<std::size_t... I>(std::index_sequence<I...>) {
  return std::array{Of<Declared, I>::Make(std::get<I>(Declared))...};
}
(std::make_index_sequence<std::tuple_size_v<std::remove_cvref_t<decltype(Declared)>>>());

}  // namespace orbelcast::interface
